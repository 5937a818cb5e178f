// From a frame of a film to a preview.
#pragma once

#include "platform/linux/media/film_frames.h"

namespace kelvane::linux_os {

// With square pixels, turned as the stream says it is meant to be seen, within the bounds; by the same rules for size
// and scaling as pictures.
[[nodiscard]] DecodedPicture framePreview(FilmFrames& frames, AVFrame& frame, const PreviewBounds& bounds);

}  // namespace kelvane::linux_os
