#include "app/notices.h"

#include <gtest/gtest.h>

#include "support/fake_questions.h"

namespace kelvane {
namespace {

using testing::FakeQuestions;

constexpr std::int64_t ticksPerDay = 864'000'000'000;

TEST(Notices, OfferTheCrashMailAtEveryFifthCrash)
{
    Settings settings;
    FakeQuestions questions;
    questions.notice.yes = true;
    std::vector<std::uint32_t> wanted;
    for (int crash = 1; crash <= 11; ++crash)
        if (countCrash(settings, questions))
            wanted.push_back(settings.crashes);
    EXPECT_EQ(wanted, (std::vector<std::uint32_t>{5, 10}));
    EXPECT_EQ(settings.crashes, 11u);
    EXPECT_EQ(questions.notices.front(), u"It seems you are experiencing problems with the program\n"
                                         u"Do you want to send a crash information email to the developers?\n"
                                         u"Thank you for helping improve the program's reliability");
}

TEST(Notices, RemindOnlyAfterMoreThanNinetyDays)
{
    Settings settings;
    settings.lastUpdateCheck = {1'000 * ticksPerDay};
    FakeQuestions questions;
    questions.notice.yes = true;
    for (const std::int64_t day : {0, 999, 1'000, 1'090})
        EXPECT_FALSE(remindOfUpdates(settings, {day * ticksPerDay}, questions)) << day;
    EXPECT_TRUE(questions.notices.empty());
    EXPECT_TRUE(remindOfUpdates(settings, {1'091 * ticksPerDay}, questions));
    EXPECT_EQ(questions.notices.front(),
              u"You haven't checked for program updates for some time.\nGo online to check for a new version now?");
}

TEST(Notices, StayAwayAfterTheTick)
{
    Settings settings;
    settings.crashes = 4;
    settings.noticesOff = 0x01;
    FakeQuestions questions;
    questions.notice = {.yes = false, .doNotShowAgain = true};
    EXPECT_FALSE(countCrash(settings, questions));
    EXPECT_EQ(settings.noticesOff, 0x81u);
    EXPECT_FALSE(remindOfUpdates(settings, {91 * ticksPerDay}, questions));
    EXPECT_EQ(settings.noticesOff, 0x89u);

    questions.notice.yes = true;
    settings.crashes = 9;
    EXPECT_FALSE(countCrash(settings, questions));
    EXPECT_FALSE(remindOfUpdates(settings, {91 * ticksPerDay}, questions));
    EXPECT_EQ(questions.notices.size(), 2u);
    EXPECT_EQ(settings.crashes, 10u);
}

}  // namespace
}  // namespace kelvane
