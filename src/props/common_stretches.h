// What two short runs have in common in stretches of three characters and more.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "props/numbered_runs.h"

namespace kelvane {

// A part of x and a part of y, by their ends.
struct SubRuns {
    std::int16_t xBegin, xEnd, yBegin, yEnd;

    [[nodiscard]] bool empty() const { return xBegin == xEnd || yBegin == yEnd; }
    [[nodiscard]] bool countNothing() const { return empty() || (xEnd - xBegin == 1 && yEnd - yBegin == 1); }
};

struct CommonBlock {
    std::int16_t x, y, length;
};

// All stretches that stand in both runs and go on in neither direction, in the order in which they begin in x. The
// longest common block of any sub-runs is the longest of them, as far as they lie inside.
class CommonStretches {
public:
    static constexpr std::int16_t least = 3;

    explicit CommonStretches(const NumberedRuns& runs);
    // The first of the longest blocks, by its place in x, then in y; of length 0 when none is of the least length.
    [[nodiscard]] CommonBlock longest(const SubRuns& runs) const;

private:
    // 16-bit numbers, eight at a time.
    using Lanes [[gnu::vector_size(16)]] = std::int16_t;
    static constexpr std::size_t lanes = 8;
    // Where stretches begin and end inside of sub-runs; not before the beginning where they lie outside.
    struct Inside {
        Lanes begin, length, ahead;
    };

    void addRow(const NumberedRuns& runs, std::size_t x, const std::array<WordPair, 2>& starts);
    void add(std::size_t x, std::size_t y, std::size_t length);
    [[nodiscard]] Inside inside(std::size_t i, const SubRuns& runs) const;
    [[nodiscard]] std::int16_t longestLength(std::size_t first, std::size_t last, const SubRuns& runs) const;

    // On each diagonal there is room for a fourth of its places, since stretches are parted from one another.
    static constexpr std::size_t most = (NumberedRuns::longest + 2) * (NumberedRuns::longest + 2) / 4;

    std::size_t count_ = 0;
    std::int16_t longest_ = 0;
    std::array<std::int16_t, NumberedRuns::longest + 1> firstFrom_;  // the first that begins at this place or later
    alignas(16) std::array<std::int16_t, most + lanes> begin_;       // in x
    alignas(16) std::array<std::int16_t, most + lanes> end_;
    alignas(16) std::array<std::int16_t, most + lanes> ahead_;  // how much further on in x than in y
};

}  // namespace kelvane
