#include "engine/property_stage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kelvane {
namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(PropertyStage, numbersAreApartByTheShareOfTheirMean)
{
    EXPECT_EQ(numberDifference(0, 0), 0);
    EXPECT_EQ(numberDifference(1000, 1105), 9);  // 105 x 200 / 2105
    EXPECT_EQ(numberDifference(-1105, -1000), 9);
    EXPECT_EQ(numberDifference(0, 1), 200);
    EXPECT_EQ(numberDifference(-5, 5), 200);
    EXPECT_EQ(numberDifference(lowest, highest), 200);
    EXPECT_EQ(numberDifference(highest, highest / 2), 66);
    EXPECT_EQ(numberDifference(lowest, lowest / 2), 66);
    // 200 x (2^63 - 1 - x) / (2^63 - 1 + x) is just below and exactly 10 here.
    EXPECT_EQ(numberDifference(highest / 21 * 21, highest / 21 * 19), 10);
    EXPECT_EQ(numberDifference(highest / 21 * 21, highest / 21 * 19 + 1), 9);
}

TEST(PropertyStage, realsFollowTheSameFormula)
{
    EXPECT_EQ(realDifference(0.0, -0.0), 0);
    EXPECT_EQ(realDifference(1000.0, 1105.0), 9);
    EXPECT_EQ(realDifference(-77.01, -77.02), 0);  // a western longitude is as near to its neighbour as an eastern one
    EXPECT_EQ(realDifference(1.7e308, 1.6e308), 6);
    EXPECT_EQ(realDifference(1e-310, 3e-310), 100);
    EXPECT_EQ(realDifference(std::nan(""), 1.0), 200);
    EXPECT_EQ(realDifference(INFINITY, 1.0), 200);
}

TEST(PropertyStage, datesAreApartByHours)
{
    constexpr std::int64_t hour = 36'000'000'000;
    EXPECT_EQ(dateDifference(0, 240 * hour - 1, 240), 0);
    EXPECT_EQ(dateDifference(0, hour, 0), 1) << "an impossible setting is clamped";
    EXPECT_EQ(dateDifference(lowest, highest, 1), 512'409'557);
}

}  // namespace
}  // namespace kelvane
