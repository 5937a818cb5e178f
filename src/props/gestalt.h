// Gestalt pattern matching (Ratcliff and Metzener, Dr. Dobb's Journal, July 1988).
#pragma once

#include <cstdint>
#include <string_view>

namespace kelvane {

// The number of matched characters: the longest common block (the first of equally long ones, by its place in x, then
// in y), plus what matches left of it and right of it, each within its own sub-runs. A block of one character counts 1
// and ends its branch; two runs of one character each count 0. Text is compared by UTF-16 units.
[[nodiscard]] std::uint32_t gestaltMatch(std::u16string_view x, std::u16string_view y);

// 2 x M / (length a + length b) x 100, truncated, 0 to 100; equal texts are 100.
[[nodiscard]] int textSimilarity(std::u16string_view a, std::u16string_view b);

}  // namespace kelvane
