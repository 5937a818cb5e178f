#include "props/short_gestalt.h"

#include "props/common_stretches.h"

namespace kelvane {
namespace {

static_assert(longestShortRun == NumberedRuns::longest);

// The places of y from begin up to, not including, end.
class PlaceRange {
public:
    PlaceRange(std::int16_t begin, std::int16_t end)
        : first_(static_cast<std::size_t>(begin) / Places::wordBits),
          behind_((static_cast<std::size_t>(end) + Places::wordBits - 1) / Places::wordBits)
    {
        for (std::size_t word = first_; word < behind_; ++word)
            inside_[word] = ~std::uint64_t{0};
        if (first_ >= behind_)
            return;
        inside_[first_] &= ~std::uint64_t{0} << static_cast<std::size_t>(begin) % Places::wordBits;
        if (const std::size_t rest = static_cast<std::size_t>(end) % Places::wordBits; rest != 0)
            inside_[behind_ - 1] &= (std::uint64_t{1} << rest) - 1;
    }

    [[nodiscard]] bool meets(const Places& places) const
    {
        std::uint64_t any = 0;
        for (std::size_t word = first_; word < behind_; ++word)
            any |= places.bits[word] & inside_[word];
        return any != 0;
    }

    // The first place inside that both have.
    [[nodiscard]] std::optional<std::int16_t> firstOf(const Places& a, const Places& b) const
    {
        for (std::size_t word = first_; word < behind_; ++word)
            if (const std::uint64_t bits = a.bits[word] & b.bits[word] & inside_[word]; bits != 0)
                return static_cast<std::int16_t>(word * Places::wordBits +
                                                 static_cast<std::size_t>(std::countr_zero(bits)));
        return std::nullopt;
    }

private:
    std::size_t first_, behind_;
    std::array<std::uint64_t, Places::words> inside_;
};

// The first block of two characters, by its place in x, then in y.
std::optional<CommonBlock> firstPair(const NumberedRuns& numbered, const SubRuns& runs)
{
    const PlaceRange range(runs.yBegin, static_cast<std::int16_t>(runs.yEnd - 1));
    for (std::int16_t x = runs.xBegin; x + 1 < runs.xEnd; ++x)
        if (const auto y = range.firstOf(numbered.inX(x).here, numbered.inX(x + 1).oneEarlier))
            return CommonBlock{x, *y, 2};
    return std::nullopt;
}

// 1 when any character stands in both, 0 otherwise.
std::uint32_t countSingle(const NumberedRuns& numbered, const SubRuns& runs)
{
    if (runs.countNothing())
        return 0;
    const PlaceRange range(runs.yBegin, runs.yEnd);
    for (std::int16_t x = runs.xBegin; x < runs.xEnd; ++x)
        if (range.meets(numbered.inX(x).here))
            return 1;
    return 0;
}

// What matches in sub-runs that have no block of three characters in common: blocks of two one after the other, since
// there is none before the first one.
std::uint32_t countShort(const NumberedRuns& numbered, SubRuns runs)
{
    std::uint32_t matched = 0;
    while (!runs.countNothing()) {
        const auto block = firstPair(numbered, runs);
        if (!block)
            return matched + countSingle(numbered, runs);
        matched += 2 + countSingle(numbered, {runs.xBegin, block->x, runs.yBegin, block->y});
        runs.xBegin = static_cast<std::int16_t>(block->x + 2);
        runs.yBegin = static_cast<std::int16_t>(block->y + 2);
    }
    return matched;
}

std::uint32_t countAll(const NumberedRuns& numbered)
{
    const CommonStretches stretches(numbered);
    // Sub-runs still to be matched. Each block leaves two of them and takes three characters, so there is room for all.
    std::array<SubRuns, NumberedRuns::longest / CommonStretches::least + 2> open;
    std::size_t depth = 0;
    open[depth++] = {0, static_cast<std::int16_t>(numbered.lengthX()), 0,
                     static_cast<std::int16_t>(numbered.lengthY())};
    std::uint32_t matched = 0;
    while (depth > 0) {
        const SubRuns runs = open[--depth];
        if (runs.empty())
            continue;
        const CommonBlock block = stretches.longest(runs);
        if (block.length == 0) {
            matched += countShort(numbered, runs);
            continue;
        }
        matched += static_cast<std::uint32_t>(block.length);
        open[depth++] = {runs.xBegin, block.x, runs.yBegin, block.y};
        open[depth++] = {static_cast<std::int16_t>(block.x + block.length), runs.xEnd,
                         static_cast<std::int16_t>(block.y + block.length), runs.yEnd};
    }
    return matched;
}

}  // namespace

std::optional<std::uint32_t> shortGestaltMatch(std::u16string_view x, std::u16string_view y)
{
    if (x.size() > longestShortRun || y.size() > longestShortRun)
        return std::nullopt;
    if (x == y)
        return x.size() > 1 ? static_cast<std::uint32_t>(x.size()) : 0u;
    NumberedRuns runs;
    if (!runs.read(x, y))
        return std::nullopt;
    return countAll(runs);
}

}  // namespace kelvane
