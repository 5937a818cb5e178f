#include "base/random.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

TEST(Random, GivesThePublishedTenThousandthNumber)
{
    seedRandom(0);
    std::uint32_t last = 0;
    for (int i = 0; i < 10000; ++i)
        last = nextRandom();
    EXPECT_EQ(last, 1043618065u);
}

TEST(Random, NoTickCountGivesTheDeadState)
{
    for (const std::uint64_t ticks : {0ull, 2147483645ull, 2147483646ull, 2147483647ull, ~0ull}) {
        seedRandom(ticks);
        const std::uint32_t first = nextRandom();
        EXPECT_NE(first, 0u) << ticks;
        EXPECT_NE(first, nextRandom()) << ticks;
    }
}

}  // namespace
}  // namespace kelvane
