#include "props/gestalt.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kelvane {
namespace {

struct Block {
    std::size_t x = 0;
    std::size_t y = 0;
    std::uint32_t length = 0;
};

// A pair of runs still to be matched. Kept on a list of its own instead of the call stack: crafted texts nest these as
// deep as the text is long.
using Runs = std::pair<std::u16string_view, std::u16string_view>;

// The longest common block by dynamic programming: lengths[j] is how long the texts agree up to (i, j) inclusive.
// Ends are visited in the order in which blocks of one length begin, so the first longest one is the one that stays.
Block longestBlock(std::u16string_view x, std::u16string_view y, std::vector<std::uint32_t>& lengths)
{
    lengths.assign(y.size(), 0);
    Block best;
    for (std::size_t i = 0; i < x.size(); ++i) {
        std::uint32_t diagonal = 0;
        for (std::size_t j = 0; j < y.size(); ++j) {
            const std::uint32_t above = std::exchange(lengths[j], x[i] == y[j] ? diagonal + 1 : 0);
            if (lengths[j] > best.length)
                best = {i + 1 - lengths[j], j + 1 - lengths[j], lengths[j]};
            diagonal = above;
        }
    }
    return best;
}

bool countsNothing(const Runs& runs)
{
    return runs.first.empty() || runs.second.empty() || (runs.first.size() == 1 && runs.second.size() == 1);
}

void pushParts(std::vector<Runs>& open, const Runs& runs, const Block& block)
{
    const auto& [x, y] = runs;
    open.emplace_back(x.substr(0, block.x), y.substr(0, block.y));
    open.emplace_back(x.substr(block.x + block.length), y.substr(block.y + block.length));
}

}  // namespace

std::uint32_t gestaltMatch(std::u16string_view x, std::u16string_view y)
{
    std::uint32_t matched = 0;
    std::vector<std::uint32_t> lengths;
    std::vector<Runs> open{{x, y}};
    while (!open.empty()) {
        const Runs runs = open.back();
        open.pop_back();
        if (countsNothing(runs))
            continue;
        const Block block = longestBlock(runs.first, runs.second, lengths);
        matched += block.length;
        if (block.length >= 2)
            pushParts(open, runs, block);
    }
    return matched;
}

int textSimilarity(std::u16string_view a, std::u16string_view b)
{
    if (a == b)
        return 100;
    const std::uint64_t matched = gestaltMatch(a, b);
    return static_cast<int>(200 * matched / (a.size() + b.size()));
}

}  // namespace kelvane
