// What decoding one picture may cost.
#pragma once

#include <cstdint>

#include "platform/linux/media/preview_size.h"

namespace kelvane::linux_os {

// The worker has an address space of 1.5 GiB; the rest is for code, libraries and small change. A picture that needs
// more is told before anything is decoded, rather than found out by a worker that dies.
inline constexpr std::uint64_t mostPictureMemory = 1'000'000'000;

// Whether a picture of this size, of which a decoder holds so many bytes for each pixel at once beside `held` others,
// is not decoded.
[[nodiscard]] constexpr bool isTooLarge(PictureSize size, std::uint32_t bytesPerPixel, std::uint64_t held,
                                        const PreviewBounds& bounds)
{
    const std::uint64_t pixels = std::uint64_t{size.width} * size.height;
    return pixels > bounds.pixels || held > mostPictureMemory ||
           (bytesPerPixel != 0 && pixels > (mostPictureMemory - held) / bytesPerPixel);
}

}  // namespace kelvane::linux_os
