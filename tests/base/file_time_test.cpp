#include "base/file_time.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

std::string isoOf(std::int64_t seconds, std::int64_t nanoseconds = 0)
{
    return toIso8601(fileTimeFromUnix(seconds, nanoseconds));
}

TEST(FileTime, CountsFromTheYear1601)
{
    EXPECT_EQ(fileTimeFromUnix(0, 0).ticks, 116444736000000000);
    EXPECT_EQ(fileTimeFromUnix(-11644473600, 0).ticks, 0);
    EXPECT_EQ(fileTimeFromUnix(1, 199).ticks - fileTimeFromUnix(0, 0).ticks, ticksPerSecond + 1);
}

TEST(FileTime, IsWrittenInUtc)
{
    EXPECT_EQ(toIso8601(FileTime{0}), "1601-01-01T00:00:00Z");
    EXPECT_EQ(isoOf(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(isoOf(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(isoOf(951782400), "2000-02-29T00:00:00Z");   // a leap year though divisible by 100
    EXPECT_EQ(isoOf(4107542399), "2100-02-28T23:59:59Z");  // no leap year
    EXPECT_EQ(isoOf(4107542400), "2100-03-01T00:00:00Z");
    EXPECT_EQ(isoOf(2147483648), "2038-01-19T03:14:08Z");
}

TEST(FileTime, FractionIsAsLongAsItNeedsToBe)
{
    EXPECT_EQ(isoOf(0, 100), "1970-01-01T00:00:00.0000001Z");
    EXPECT_EQ(isoOf(-1, 250'000'000), "1969-12-31T23:59:59.25Z");
}

}  // namespace
}  // namespace kelvane
