// What stands beside the pixels of a PNG file (ISO/IEC 15948, and its extension for EXIF).
#pragma once

#include <cstdint>
#include <vector>

#include "platform/random_access_file.h"

namespace kelvane {

struct PngChunks {
    std::uint32_t bitDepth = 0;  // of a pixel as it is stored; 0: this is no PNG file
    std::vector<std::byte> exif;
};

// Goes from chunk to chunk without reading pixels; a bounded number of them.
[[nodiscard]] PngChunks readPngChunks(RandomAccessFile& file);

}  // namespace kelvane
