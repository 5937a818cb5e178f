#include "results/visible_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace kelvane {
namespace {

// Long enough for several blocks of counts, with questions between changes, so that old counts would show.
TEST(VisibleRows, CountAsAPlainListDoes)
{
    std::mt19937 random(7);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    VisibleRows rows;
    std::vector<bool> plain;
    for (int step = 0; step < 3000; ++step) {
        if (step % 50 == 0) {
            plain.resize(below(2200), true);
            rows.resize(plain.size());
        }
        for (std::size_t i = below(3); i > 0 && !plain.empty(); --i) {
            const std::size_t position = below(plain.size());
            rows.set(position, plain[position] = below(4) == 0);
        }
        const std::size_t end = below(plain.size() + 1);
        const auto rank = std::count(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(end), true);
        ASSERT_EQ(rows.rank(end), static_cast<std::uint32_t>(rank)) << step;
        if (end < plain.size() && plain[end]) {
            ASSERT_EQ(rows.select(static_cast<std::uint32_t>(rank)), end) << step;
        }
        ASSERT_EQ(rows.count(), static_cast<std::uint32_t>(std::count(plain.begin(), plain.end(), true)));
    }
}

}  // namespace
}  // namespace kelvane
