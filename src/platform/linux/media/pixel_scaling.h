// The last step to a preview, the same for pictures and films.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/linux/media/preview_size.h"

namespace kelvane::linux_os {

// Rows from top to bottom of three bytes a pixel: red, green, blue.
struct RgbPixels {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> samples;
    // How much of that the picture covers, from the top left corner: decoders that make pictures smaller round their
    // sides up. To forget the fraction would move the picture by up to half a pixel.
    double coveredWidth = 0;
    double coveredHeight = 0;
};

// Brings the picture to this size, with the filter of Mitchell and Netravali ("Reconstruction filters in computer
// graphics", 1988, B = C = 1/3): of the filters tried, the one that tells the least of copies in other resolutions and
// formats apart. The same size gives the very pixels.
[[nodiscard]] DecodedPicture scaledPixels(const RgbPixels& pixels, PictureSize size);

}  // namespace kelvane::linux_os
