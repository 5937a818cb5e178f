// Crash dumps on Windows: this test program starts itself to have something that crashes.
#include <cstring>
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/windows/adapters.h"
#include "support/temp_tree.h"
#include "support/windows_self_start.h"

namespace kelvane {
namespace {

constexpr const wchar_t* dumpVariable = L"KELVANE_DUMP";

DWORD crashInto(const std::filesystem::path& dump)
{
    return testing::startSelf(L"--gtest_filter=CrashOrder.CarryOut --gtest_catch_exceptions=0", dumpVariable,
                              dump.native());
}

TEST(CrashOrder, CarryOut)
{
    wchar_t dump[1024] = {};
    if (::GetEnvironmentVariableW(dumpVariable, dump, 1024) == 0)
        GTEST_SKIP() << "for the crashing process only";
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const auto capture = makeWindowsCrashCapture();
    ASSERT_TRUE(capture->install(dump).ok());
    ::RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
}

// The stream types in the directory of a minidump, whose header is "MDMP", a version, the count and the place.
std::vector<std::uint32_t> streamsIn(const std::string& dump)
{
    const auto number = [&](std::size_t at) {
        std::uint32_t value = 0;
        if (at + sizeof value <= dump.size())
            std::memcpy(&value, dump.data() + at, sizeof value);
        return value;
    };
    std::vector<std::uint32_t> types;
    for (std::uint32_t i = 0; dump.starts_with("MDMP") && i < number(8) && i < 100; ++i)
        types.push_back(number(number(12) + 12 * i));
    return types;
}

constexpr std::uint32_t threadList = 3, exceptionStream = 6;

TEST(WindowsCrashCaptureTest, ACrashLeavesADumpWithItsExceptionInPlaceOfAnOlderOne)
{
    const testing::TempTree tree;
    const auto dump = tree.write("KelVa_minidump.mdmp", std::string(3'000'000, 'x'));
    EXPECT_NE(crashInto(dump), 0u);
    const auto streams = streamsIn(tree.read("KelVa_minidump.mdmp"));
    EXPECT_NE(std::find(streams.begin(), streams.end(), exceptionStream), streams.end());
    EXPECT_NE(std::find(streams.begin(), streams.end(), threadList), streams.end());
}

TEST(WindowsCrashCaptureTest, ADumpOnDemandLetsTheProcessGoOnAndTellsOfFailure)
{
    const testing::TempTree tree;
    const auto capture = makeWindowsCrashCapture();
    ASSERT_TRUE(capture->writeNow(tree.path("now.mdmp")).ok());
    const auto streams = streamsIn(tree.read("now.mdmp"));
    EXPECT_NE(std::find(streams.begin(), streams.end(), threadList), streams.end());
    EXPECT_EQ(std::find(streams.begin(), streams.end(), exceptionStream), streams.end());
    EXPECT_FALSE(capture->writeNow(tree.path("no-folder") / "now.mdmp").ok());
}

}  // namespace
}  // namespace kelvane
