// What cameras write before they make a picture of it, through LibRaw.
#pragma once

#include <string_view>

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

// By the name: such files have many shapes and few marks, most of them look like TIFF with a small picture in front.
[[nodiscard]] bool isNamedAsRaw(std::string_view fileName);

// Developed from the sensor's own values, never from the small pictures that cameras put beside them: with the white
// that the camera chose, in half the resolution where that is enough. unknownFormat where it is no such file.
[[nodiscard]] DecodedPicture rawPreview(RandomAccessFile& file, const PreviewBounds& bounds);

}  // namespace kelvane::linux_os
