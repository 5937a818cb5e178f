// Frames of FFmpeg's decoders as plain pixels.
#pragma once

extern "C" {
#include <libavutil/frame.h>
}

#include "platform/linux/media/pixel_scaling.h"

namespace kelvane::linux_os {

// Brought to this size by averaging; transparent parts on white. No samples where the frame's format is not understood.
[[nodiscard]] RgbPixels framePixels(const AVFrame& frame, PictureSize size);

}  // namespace kelvane::linux_os
