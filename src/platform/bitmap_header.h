// The sizes of plain bitmaps, which stand in their first bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/random_access_file.h"

namespace kelvane {

struct BitmapHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;
    std::int32_t dotsPerMetre = 0;  // 0: not told
};

// BMP of any age by its content; TGA, which has no mark, by the ending of the name. Nothing for other files.
[[nodiscard]] std::optional<BitmapHeader> readBitmapHeader(RandomAccessFile& file, std::string_view fileName);

}  // namespace kelvane
