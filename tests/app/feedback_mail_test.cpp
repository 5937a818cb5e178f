#include "app/feedback_mail.h"

#include <gtest/gtest.h>

#include "app/mail_link.h"
#include "app/makers.h"
#include "app/version_info.h"
#include "base/utf.h"
#include "support/fake_places.h"
#include "support/fake_processes.h"
#include "support/fake_questions.h"
#include "support/memory_file_system.h"

namespace kelvane {
namespace {

class FakeCrashCapture final : public CrashCapture {
public:
    explicit FakeCrashCapture(testing::MemoryFileSystem& files) : files_(files) {}
    Status install(const std::filesystem::path&) override { return {}; }
    Status writeNow(const std::filesystem::path& dump) override
    {
        if (works)
            files_.addFile(dump.generic_string(), "dump");
        return works ? Status() : Status(Error{});
    }
    bool works = true;

private:
    testing::MemoryFileSystem& files_;
};

class FakeWindows final : public WindowProbe {
public:
    bool someWindowHangs(std::chrono::milliseconds patience) override { return patience.count() == 1'000 && hang; }
    bool hang = false;
};

class FeedbackMailTest : public ::testing::Test {
protected:
    std::u16string body(const std::u16string& request)
    {
        return u"YOUR CONFIGURATION\r\nWINVER: 10.0-19045 (win10) x64\r\nVersion: " + CAppVersionInfo::versionText() +
               u"\r\n-----------\r\n\r\n" + request;
    }
    void leaveDump() { files_.addFile(dumpPath(places_).generic_string(), "dump"); }

    testing::FakePlaces places_{"/made up"};
    testing::FakeSystemFacts system_;
    testing::MemoryFileSystem files_;
    testing::FakeProcesses processes_;
    FakeCrashCapture crashes_{files_};
    testing::FakeQuestions questions_;
    FakeWindows windows_;
    int nothingWorked_ = 0;
    FeedbackMail mail_{{places_, system_, files_, processes_, crashes_}, questions_, [this] { ++nothingWorked_; }};
};

TEST_F(FeedbackMailTest, FeedbackTellsTheConfiguration)
{
    mail_.sendFeedback();
    ASSERT_EQ(processes_.mails.size(), 1u);
    const MailDraft& draft = processes_.mails[0];
    EXPECT_EQ(draft.to, makers::supportMail());
    EXPECT_EQ(draft.subject, u"kelvane feedback");
    EXPECT_EQ(draft.body, body(u"(your feedback here)"));
    EXPECT_TRUE(draft.attachment.empty());
    EXPECT_TRUE(processes_.links.empty());
}

TEST_F(FeedbackMailTest, CrashMailCarriesTheDump)
{
    leaveDump();
    mail_.sendCrash(windows_);
    ASSERT_EQ(processes_.mails.size(), 1u);
    const MailDraft& draft = processes_.mails[0];
    EXPECT_EQ(draft.subject, u"kelvane crash information");
    EXPECT_EQ(draft.body, body(u"PLEASE ADD SOME INFORMATION, HOW DID THE CRASH HAPPEN?\r\n\r\n(your details here)"));
    EXPECT_EQ(draft.attachment,
              places_.temporary / ("KelVa_minidump" + toUtf8(CAppVersionInfo::versionText()) + ".mdmp"));
}

TEST_F(FeedbackMailTest, WithoutADumpTheStatusLineSaysSo)
{
    mail_.sendCrash(windows_);
    windows_.hang = true;
    crashes_.works = false;
    mail_.sendCrash(windows_);
    EXPECT_TRUE(processes_.mails.empty());
    EXPECT_EQ(questions_.statuses,
              std::vector<std::u16string>(2, u"There is no crash dump file for this program version"));
}

TEST_F(FeedbackMailTest, AHungWindowIsDumpedNow)
{
    windows_.hang = true;
    mail_.sendCrash(windows_);
    ASSERT_EQ(processes_.mails.size(), 1u);
    EXPECT_EQ(processes_.mails[0].subject, u"kelvane crash information (hung)");
    EXPECT_FALSE(processes_.mails[0].attachment.empty());
}

TEST_F(FeedbackMailTest, FallsBackToALinkAndThenToTheWindow)
{
    leaveDump();
    processes_.mailOutcome = MailOutcome::cancelled;
    mail_.sendCrash(windows_);
    EXPECT_TRUE(processes_.links.empty());

    processes_.mailOutcome = MailOutcome::unavailable;
    mail_.sendCrash(windows_);
    ASSERT_EQ(processes_.links.size(), 1u);
    EXPECT_EQ(processes_.links[0], mailLink(processes_.mails[1]));
    EXPECT_EQ(nothingWorked_, 0);

    processes_.openFailure = Error{};
    mail_.sendFeedback();
    EXPECT_EQ(nothingWorked_, 1);
}

TEST(MailLink, EscapesEachPart)
{
    EXPECT_EQ(mailLink({u"a@b.example", u"50% [U]?", u"x&y=1#z\r\n\u00E4/\"\U0001F600\"", {}}),
              "mailto:a@b.example?subject=50%25%20%5BU%5D%3F&body=x%26y=1%23z%0D%0A%C3%A4/%22%F0%9F%98%80%22");
}

}  // namespace
}  // namespace kelvane
