#include "platform/interrupts.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "platform/linux/adapters.h"

namespace kelvane {
namespace {

using std::chrono::milliseconds;

bool becomesCancelled(const CancelFlag& flag)
{
    for (int i = 0; i < 2000 && !flag.cancelled(); ++i)
        std::this_thread::sleep_for(milliseconds(1));
    return flag.cancelled();
}

TEST(Interrupts, TheFirstOneSetsTheFlag)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        CancelFlag flag;
        const auto watch = makePosixInterrupts()->watch(flag);
        kill(getpid(), signal);
        EXPECT_TRUE(becomesCancelled(flag)) << signal;
    }
}

TEST(InterruptsDeathTest, TheSecondOneEndsTheProgramAtOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto interruptedTwice = [] {
        CancelFlag flag;
        const auto watch = makePosixInterrupts()->watch(flag);
        kill(getpid(), SIGINT);
        if (!becomesCancelled(flag))
            std::exit(1);
        kill(getpid(), SIGINT);
        std::this_thread::sleep_for(std::chrono::seconds(5));
        std::exit(2);
    };
    EXPECT_EXIT(interruptedTwice(), ::testing::ExitedWithCode(130), "");
}

TEST(Interrupts, WhatWasIgnoredAtTheStartStaysIgnored)
{
    const auto before = signal(SIGHUP, SIG_IGN);
    CancelFlag flag;
    {
        const auto watch = makePosixInterrupts()->watch(flag);
        kill(getpid(), SIGHUP);
        std::this_thread::sleep_for(milliseconds(50));
    }
    signal(SIGHUP, before);
    EXPECT_FALSE(flag.cancelled());
}

TEST(Interrupts, AClosedPipeIsAnOrdinaryError)
{
    CancelFlag flag;
    const auto watch = makePosixInterrupts()->watch(flag);
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    EXPECT_EQ(write(ends[1], "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
    close(ends[1]);
}

}  // namespace
}  // namespace kelvane
