#include "props/gestalt.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "props/short_gestalt.h"

namespace kelvane {
namespace {

// A part of x and a part of y, by their ends.
struct Runs {
    std::uint32_t xBegin, xEnd, yBegin, yEnd;

    [[nodiscard]] bool countNothing() const
    {
        return xBegin == xEnd || yBegin == yEnd || (xEnd - xBegin == 1 && yEnd - yBegin == 1);
    }
};

struct Block {
    std::uint32_t x = 0, y = 0, length = 0;
};

// Finds the longest common blocks of runs of two texts. Only places with equal characters are looked at: for every
// character of x the places of that character in y.
class BlockFinder {
public:
    BlockFinder(std::u16string_view x, std::u16string_view y);
    [[nodiscard]] Block longest(const Runs& runs);

private:
    // How long the texts agree up to a place in y and the place in x that the row stands for.
    struct Agreement {
        std::uint64_t row = 0;
        std::uint32_t length = 0;
    };
    struct Range {
        std::uint32_t begin, end;
    };

    std::uint32_t extendRow(std::uint32_t x, const Runs& runs, Block& best);

    std::vector<std::uint32_t> places_;  // in y, sorted by character, then by place
    std::vector<Range> placesOf_;        // the part of places_ for each character of x
    std::vector<Agreement> agreements_;  // for each place in y; what an older row left there does not count
    std::uint64_t row_ = 0;
};

BlockFinder::BlockFinder(std::u16string_view x, std::u16string_view y) : places_(y.size()), agreements_(y.size())
{
    std::iota(places_.begin(), places_.end(), 0u);
    std::stable_sort(places_.begin(), places_.end(), [y](std::uint32_t a, std::uint32_t b) { return y[a] < y[b]; });
    placesOf_.reserve(x.size());
    for (const char16_t unit : x) {
        const auto begin = std::lower_bound(places_.begin(), places_.end(), unit,
                                            [y](std::uint32_t place, char16_t wanted) { return y[place] < wanted; });
        const auto end = std::upper_bound(begin, places_.end(), unit,
                                          [y](char16_t wanted, std::uint32_t place) { return wanted < y[place]; });
        placesOf_.push_back(
            {static_cast<std::uint32_t>(begin - places_.begin()), static_cast<std::uint32_t>(end - places_.begin())});
    }
}

// Goes from the last place in y to the first, so that the row before is still there when it is needed. Gives the
// longest agreement that ends at this place in x.
std::uint32_t BlockFinder::extendRow(std::uint32_t x, const Runs& runs, Block& best)
{
    ++row_;
    std::uint32_t longestHere = 0;
    const auto begin = places_.begin() + placesOf_[x].begin;
    auto place = std::lower_bound(begin, places_.begin() + placesOf_[x].end, runs.yEnd);
    const std::uint32_t toBeat = best.length;
    while (place != begin && *--place >= runs.yBegin) {
        const std::uint32_t y = *place;
        const bool goesOn = y > runs.yBegin && agreements_[y - 1].row == row_ - 1;
        const std::uint32_t length = goesOn ? agreements_[y - 1].length + 1 : 1;
        agreements_[y] = {row_, length};
        longestHere = std::max(longestHere, length);
        // Among equally long ones that end here, the first in y counts.
        if (length > toBeat && length >= best.length)
            best = {x + 1 - length, y + 1 - length, length};
    }
    return longestHere;
}

// Ends are visited in the order in which blocks of one length begin, so the first of the longest ones stays.
Block BlockFinder::longest(const Runs& runs)
{
    ++row_;  // nothing goes on from runs that were searched before
    Block best;
    std::uint32_t running = 0;
    for (std::uint32_t x = runs.xBegin; x < runs.xEnd && running + (runs.xEnd - x) > best.length; ++x)
        running = extendRow(x, runs, best);
    return best;
}

}  // namespace

std::uint32_t gestaltMatch(std::u16string_view x, std::u16string_view y)
{
    if (const auto matched = shortGestaltMatch(x, y))
        return *matched;
    std::uint32_t matched = 0;
    BlockFinder finder(x, y);
    // Runs still to be matched, on a list instead of the call stack: crafted texts nest them as deep as they are long.
    std::vector<Runs> open{{0, static_cast<std::uint32_t>(x.size()), 0, static_cast<std::uint32_t>(y.size())}};
    while (!open.empty()) {
        const Runs runs = open.back();
        open.pop_back();
        if (runs.countNothing())
            continue;
        const Block block = finder.longest(runs);
        matched += block.length;
        if (block.length < 2)
            continue;
        open.push_back({runs.xBegin, block.x, runs.yBegin, block.y});
        open.push_back({block.x + block.length, runs.xEnd, block.y + block.length, runs.yEnd});
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
