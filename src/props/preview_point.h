// Where a preview lies among others, for an index of many.
#pragma once

#include <array>
#include <cstddef>

#include "props/preview_layout.h"

namespace kelvane {

// Previews that a second look agrees on lie near one another, see PreviewWindow. Made of the same numbers as the look:
// the coarsest of the structure, the light, and the shares of the colours.
struct PreviewPoint {
    static constexpr std::size_t structure = 14;  // the first of the numbers
    static constexpr std::size_t light = structure;
    static constexpr std::size_t shares = light + 1;
    static constexpr std::size_t count = shares + 2;

    std::array<float, count> at{};

    explicit PreviewPoint(const PreviewLayout& layout);
};

// How far from a point another may lie at most if a look agrees on both.
struct PreviewWindow {
    float structure;  // the sum of the squares of the differences; see structureDistance()
    float light;
    float share;

    explicit PreviewWindow(const PreviewLayout& layout);
};

// 0 to 4 from the correlation: the square of the distance of two structures, which is never less than that of points.
[[nodiscard]] constexpr double structureDistance(double correlation)
{
    return 2 * (1 - correlation);
}

}  // namespace kelvane
