// How long a sound or a film lasts, and whether its bits flow evenly.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/media/ffmpeg_input.h"

namespace kelvane::linux_os {

struct StreamLength {
    std::int64_t ticks = 0;  // of 100 nanoseconds; 0: unknown
    std::optional<bool> variableRate;
};

// Where the container does not say how long it lasts, the packets are counted, as long as the file is not too large for
// that. Moves the input's place. A claim that the file is too small for is not believed.
[[nodiscard]] StreamLength measureLength(FfmpegInput& input, std::uint64_t fileSize);

}  // namespace kelvane::linux_os
