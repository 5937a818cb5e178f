// A preview in short: enough to order pictures by what they look like, and to tell that two cannot be one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "props/cached_bitmap.h"

namespace kelvane {

// The means of the cells of a grid over the preview. A value type; immutable once made.
struct PreviewSignature {
    static constexpr std::size_t side = 16;  // cells in each direction

    std::uint16_t width = 0;  // of the preview
    std::uint16_t height = 0;
    std::array<std::uint8_t, side * side> brightness{};
    std::array<std::uint8_t, 3 * (side / 4) * (side / 4)> colours{};  // red, green, blue of a coarser grid

    [[nodiscard]] static PreviewSignature of(const CachedBitmap& preview);
    [[nodiscard]] std::vector<std::byte> packed() const;
    [[nodiscard]] static std::optional<PreviewSignature> unpacked(std::span<const std::byte> bytes);
    friend bool operator==(const PreviewSignature&, const PreviewSignature&) = default;
};

// The second look at two previews, which the score is blind for: overall colours and structure.
struct PreviewLook {
    double colourDifference = 0;  // the mean difference of the colours of the cells, 0 to 255
    double light = 1;             // how much brighter the second is, as a factor
    double evenedDifference = 0;  // of the colours, once the brighter one is darkened to the other's light
    // Of the brightness of the cells, without its even slope from one edge to the other, which skies and shaded
    // backgrounds share: -1 to 1; near 1 where nothing else is in either.
    double correlation = 0;
    bool flat = false;   // there is hardly anything in one of them
    bool agrees = true;  // nothing of it contradicts that the two are one picture
};

// What previews that agree are bounded by.
namespace look_limit {
inline constexpr double leastCorrelation = 0.7;
inline constexpr double mostLight = 1.42;  // or its inverse
inline constexpr double mostEvenedDifference = 12;
// The deviation of the cells' brightness without its slope. Below it there is nothing to know a picture by: white
// lettering on nothing, empty pages, fog. Like silence in music, it is like everything.
inline constexpr double leastDeviation = 4;
}  // namespace look_limit

// Both of the same size, else they do not agree. Depends on the signatures alone, so that it can be asked before
// previews are fetched. Symmetric.
[[nodiscard]] PreviewLook secondLook(const PreviewSignature& a, const PreviewSignature& b);

}  // namespace kelvane
