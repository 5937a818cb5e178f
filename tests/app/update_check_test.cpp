#include "app/update_check.h"

#include <gtest/gtest.h>

#include "app/makers.h"
#include "support/fake_processes.h"
#include "support/fake_questions.h"
#include "support/fakes.h"

namespace kelvane {
namespace {

TEST(UpdateCheck, TellsThePageTheVersion)
{
    EXPECT_EQ(updateLink("https://a.example/u", u"1.2.3 [U] x64"), "https://a.example/u?v=1.2.3%20%5BU%5D%20x64");
    EXPECT_EQ(updateLink("https://a.example/u?l=de", u"1&2"), "https://a.example/u?l=de&v=1%262");
}

TEST(UpdateCheck, NotesTheTimeOnlyWhenOnlineAndOpensThePageInAnyCase)
{
    Settings settings;
    testing::FakeProcesses processes;
    testing::FakeClock clock;
    testing::FakeQuestions questions;
    clock.milliseconds = 1'000;
    processes.openFailure = Error{};

    processes.online = false;
    checkForUpdates(settings, processes, clock, questions);
    EXPECT_EQ(settings.lastUpdateCheck, FileTime{});
    EXPECT_EQ(questions.errors,
              std::vector<std::u16string>{u"There is no active internet connection, please go online and try again"});

    processes.online = true;
    checkForUpdates(settings, processes, clock, questions);
    EXPECT_EQ(settings.lastUpdateCheck, clock.now());
    EXPECT_EQ(questions.errors.size(), 1u);
    ASSERT_EQ(processes.links.size(), 2u);
    for (const std::string& link : processes.links)
        EXPECT_TRUE(link.starts_with(std::string(makers::updatePage()) + "?v=")) << link;
}

}  // namespace
}  // namespace kelvane
