// From a picture in libvips to the pixels of its preview.
#pragma once

#include "platform/linux/media/picture_loading.h"

namespace kelvane::linux_os {

// Decodes the picture. Takes it, since its pixels can be had only once.
[[nodiscard]] DecodedPicture shrinkPicture(LoadedPicture picture);

}  // namespace kelvane::linux_os
