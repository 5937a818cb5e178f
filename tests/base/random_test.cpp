#include "base/random.h"

#include <algorithm>
#include <thread>
#include <vector>

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

// Drawn from several threads, each number of the sequence is given out exactly once.
TEST(Random, ThreadsShareOneSequence)
{
    constexpr std::size_t draws = 2000;
    std::vector<std::uint32_t> drawn(2 * draws);
    seedRandom(41);
    const auto draw = [&drawn](std::size_t from) {
        for (std::size_t i = from; i < from + draws; ++i)
            drawn[i] = nextRandom();
    };
    std::thread other(draw, draws);
    draw(0);
    other.join();

    std::vector<std::uint32_t> expected(2 * draws);
    seedRandom(41);
    std::generate(expected.begin(), expected.end(), nextRandom);
    std::sort(drawn.begin(), drawn.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(drawn, expected);
}

}  // namespace
}  // namespace kelvane
