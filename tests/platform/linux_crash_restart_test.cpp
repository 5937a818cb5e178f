#include "platform/linux/crash_restart.h"

#include <gtest/gtest.h>

namespace kelvane::linux_os {
namespace {

TEST(CrashRestart, GivesBackWhatWasRemembered)
{
    const std::vector<std::string> arguments = {"/X", "", "a b\xFF"};
    rememberRestart(arguments);
    EXPECT_EQ(restartWish(restartMemory()).arguments, arguments);
    rememberRestart({std::string(4096, 'a')});
    EXPECT_FALSE(restartWish(restartMemory()).wanted);
}

TEST(CrashRestart, DamagedMemoryIsNoWish)
{
    RestartMemory memory{.wanted = 1, .size = 3, .bytes = {'/', 'X', '\0'}};
    EXPECT_TRUE(restartWish(memory).wanted);
    memory.size = 2;
    EXPECT_FALSE(restartWish(memory).wanted);
    memory.size = 5000;
    EXPECT_FALSE(restartWish(memory).wanted);
    memory = {.wanted = 7, .size = 3, .bytes = {'/', 'X', '\0'}};
    EXPECT_FALSE(restartWish(memory).wanted);
}

}  // namespace
}  // namespace kelvane::linux_os
