// How far apart two property values are, on the percentage scale: pure arithmetic.
#pragma once

#include <cstdint>

namespace kelvane {

// |a - b| x 200 / (|a| + |b|), truncated: 0 to 200. Dividing by the sum of the magnitudes makes western and southern
// coordinates, and unsigned numbers that read as negative, as far apart as any others. A sum of 0 is no difference.
// Exact for all values; nothing overflows.
[[nodiscard]] std::int32_t numberDifference(std::int64_t a, std::int64_t b) noexcept;

// The same for doubles. A value that is no finite number is as far as can be (200) from every other.
[[nodiscard]] std::int32_t realDifference(double a, double b) noexcept;

// One percent for every so many hours between two dates (100-ns units), truncated; not limited to 100.
[[nodiscard]] std::int32_t dateDifference(std::int64_t a, std::int64_t b, std::int64_t hoursPerPercent) noexcept;

// The percentage that a value must reach. The first property is held to at least 95 as soon as something else is
// compared too: it is what the candidates are sorted by, and a wide tolerance there would compare all with all.
[[nodiscard]] std::int32_t requiredPercent(std::int32_t similarity, bool firstProperty, bool moreIsCompared) noexcept;

}  // namespace kelvane
