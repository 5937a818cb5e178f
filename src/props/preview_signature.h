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
    double correlation = 0;  // of the brightness of the cells, -1 to 1; 1 where both are flat and of one brightness
    bool agrees = true;      // neither contradicts that the two are one picture
};

// Both of the same size, else they do not agree. Depends on the signatures alone, so that it can be asked before
// previews are fetched. Symmetric.
[[nodiscard]] PreviewLook secondLook(const PreviewSignature& a, const PreviewSignature& b);

}  // namespace kelvane
