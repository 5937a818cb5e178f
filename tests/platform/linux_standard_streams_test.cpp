#include "platform/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace kelvane {
namespace {

// Exits with 0 when nothing that is opened later can be mistaken for standard output.
void startWithClosedOutput()
{
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    reserveStandardStreams();
    const bool apart = open("/dev/null", O_WRONLY) > STDERR_FILENO;
    const bool fails = write(STDOUT_FILENO, "x", 1) == -1 && errno == EBADF;
    std::_Exit(apart && fails ? 0 : 1);
}

TEST(StandardStreamsDeathTest, AClosedOneIsNotTakenByTheNextFile)
{
    EXPECT_EXIT(startWithClosedOutput(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace kelvane
