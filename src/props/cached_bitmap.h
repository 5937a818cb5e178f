// The preview of a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/raw_value.h"

namespace kelvane {

// Pixels of four bytes: blue, green, red, and one that is ignored; rows from top to bottom, without gaps. Immutable
// once made; any number of threads may read it.
class CachedBitmap final : public RawObject {
public:
    static constexpr std::uint32_t mostWidth = 200;
    static constexpr std::uint32_t mostHeight = 200;

    // Null where the size is not within the bounds, or not that of the pixels.
    [[nodiscard]] static Ref<CachedBitmap> make(std::uint32_t width, std::uint32_t height,
                                                std::vector<std::byte> pixels);

    [[nodiscard]] std::uint32_t width() const { return width_; }
    [[nodiscard]] std::uint32_t height() const { return height_; }
    [[nodiscard]] std::span<const std::byte> pixels() const { return pixels_; }

    // As bytes for a cache, without the bytes that are ignored; null for bytes that are not whole.
    [[nodiscard]] std::vector<std::byte> packed() const;
    [[nodiscard]] static Ref<CachedBitmap> unpacked(std::span<const std::byte> bytes);

private:
    CachedBitmap(std::uint32_t width, std::uint32_t height, std::vector<std::byte> pixels);

    std::uint32_t width_;
    std::uint32_t height_;
    std::vector<std::byte> pixels_;
};

}  // namespace kelvane
