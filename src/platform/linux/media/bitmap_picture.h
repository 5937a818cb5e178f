// Plain bitmaps (BMP, TGA, and PCX), which libvips knows through a far larger library alone: by FFmpeg's decoders.
#pragma once

#include <string_view>

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

// unknownFormat where it is no such file. By the content; TGA, which has no mark, by the name.
[[nodiscard]] DecodedPicture bitmapPreview(RandomAccessFile& file, std::string_view fileName,
                                           const PreviewBounds& bounds);

}  // namespace kelvane::linux_os
