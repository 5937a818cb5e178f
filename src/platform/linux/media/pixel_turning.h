// Turning previews the way they are meant to be seen.
#pragma once

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

// Orientations are those of Exif: 1 as it is, 2 mirrored left to right, 3 upside down, 4 mirrored top to bottom, 5 to 8
// with the sides swapped (6: to be turned clockwise by a quarter). Anything else counts as 1.
[[nodiscard]] bool swapsSides(int orientation);
[[nodiscard]] DecodedPicture turned(DecodedPicture picture, int orientation);

}  // namespace kelvane::linux_os
