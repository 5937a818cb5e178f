// Pictures from files into libvips, already made smaller where the format allows that while decoding.
#pragma once

#include <cstdint>

#include "platform/linux/media/preview_size.h"
#include "platform/linux/media/vips_source.h"

namespace kelvane::linux_os {

struct LoadedPicture {
    MediaFault fault;
    VipsImageHandle image;  // not turned yet; its pixels are decoded when they are asked for, once, from top to bottom
    // How much of the image the picture covers, from the top left corner; see RgbPixels.
    double coveredWidth = 0;
    double coveredHeight = 0;
    int orientation = 1;  // as Exif counts them: how to turn and mirror it
    PictureSize preview;  // of its preview, before it is turned
};

// By its first bytes.
[[nodiscard]] bool looksLikeTiff(RandomAccessFile& file);

// The first picture of the file. Nothing is decoded but what stands in front of the pixels. The file outlives it.
[[nodiscard]] LoadedPicture loadPicture(RandomAccessFile& file, const PreviewBounds& bounds);

}  // namespace kelvane::linux_os
