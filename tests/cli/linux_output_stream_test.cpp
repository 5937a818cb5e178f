#include "cli/output_stream.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kelvane {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

TEST(OutputStream, EveryByteArrivesInOrder)
{
    const File file(std::tmpfile());
    ASSERT_TRUE(file);
    std::string expected;
    {
        OutputStream out(file.get());
        for (int i = 0; i < 30'000; ++i) {
            out << i << '\0';
            expected += std::to_string(i) + '\0';
        }
    }
    std::string arrived(expected.size() + 1, '?');
    std::rewind(file.get());
    arrived.resize(std::fread(arrived.data(), 1, arrived.size(), file.get()));
    EXPECT_TRUE(arrived == expected);
}

TEST(OutputStream, AFullDeviceIsRemembered)
{
    const File file(std::fopen("/dev/full", "w"));
    ASSERT_TRUE(file);
    OutputStream out(file.get());
    out << "x" << std::flush;
    EXPECT_FALSE(out.good());
    EXPECT_EQ(out.failure(), std::errc::no_space_on_device);
}

TEST(OutputStream, AClosedPipeIsToldFromOtherFailures)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    std::FILE* reader = popen("exit 0", "w");
    ASSERT_TRUE(reader);
    {
        OutputStream out(reader);
        // Until the reader has gone its pipe still takes bytes.
        for (int i = 0; i < 100'000 && out.good(); ++i)
            out << "some line\n" << std::flush;
        EXPECT_EQ(out.failure(), std::errc::broken_pipe);
    }
    pclose(reader);
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace kelvane
