// What libvips knows of a picture without decoding it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/random_access_file.h"

namespace kelvane::linux_os {

struct PictureHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // of a pixel as it is decoded
    std::uint32_t frames = 1;
    std::optional<double> horizontalDots;  // in an inch
    std::optional<double> verticalDots;
    bool palette = false;  // a format that stores an index of a byte for each pixel
    std::string exif;      // blocks as they are in the file; empty where there is none
    std::string xmp;
    std::string iptc;
};

// Nothing for what is no picture that it reads.
[[nodiscard]] std::optional<PictureHeader> readPictureHeader(RandomAccessFile& file);

}  // namespace kelvane::linux_os
