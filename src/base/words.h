// Small helpers for lists of words and for finding what a person meant to type.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Splits at every separator, trims spaces and drops empty parts.
[[nodiscard]] std::vector<std::string> splitWords(std::string_view text, char separator);

// Lower-cases A to Z only.
[[nodiscard]] std::string asciiLower(std::string_view text);

// '*' matches any run of characters, '?' any single byte; everything else matches itself. Linear in practice:
// only the last '*' is ever retried.
[[nodiscard]] bool wildcardMatch(std::string_view pattern, std::string_view text) noexcept;

// The number of single-character insertions, deletions and substitutions between a and b (Levenshtein 1966).
[[nodiscard]] std::size_t editDistance(std::string_view a, std::string_view b);

// The known words nearest to what was typed, nearest first, at most `most`. Words further than half the typed
// length are left out, and so are those that take two changes more than the nearest one. Case is ignored.
[[nodiscard]] std::vector<std::string> nearestWords(std::string_view typed, const std::vector<std::string>& known,
                                                    std::size_t most = 3);

}  // namespace kelvane
