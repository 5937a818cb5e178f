// What two sequences have in common: lines of texts, and words of lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kelvane {

// Places of equal elements, rising in both sequences.
struct CommonPlace {
    std::size_t a = 0, b = 0;
    friend bool operator==(const CommonPlace&, const CommonPlace&) = default;
};

struct CommonSequence {
    std::vector<CommonPlace> places;
    // More elements differ than are looked for: only what both begin and end with is known to be common.
    bool tooDifferent = false;
};

// A longest common sequence, by E. W. Myers, "An O(ND) Difference Algorithm and Its Variations", Algorithmica 1 (1986).
// Time and memory are bounded by the number of differences, at most mostDifferences.
[[nodiscard]] CommonSequence commonSequence(std::span<const std::uint32_t> a, std::span<const std::uint32_t> b,
                                            std::size_t mostDifferences);

// The same number for equal elements of two sequences.
void numberAlike(std::span<const std::u16string_view> a, std::span<const std::u16string_view> b,
                 std::vector<std::uint32_t>& numbersA, std::vector<std::uint32_t>& numbersB);

// Characters of a line.
struct TextRange {
    std::size_t first = 0, count = 0;
    friend bool operator==(const TextRange&, const TextRange&) = default;
};

struct WordChanges {
    std::vector<TextRange> a, b;  // that the other one has not
};

[[nodiscard]] WordChanges changedWords(std::u16string_view a, std::u16string_view b);

}  // namespace kelvane
