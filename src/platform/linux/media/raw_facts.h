// What LibRaw tells of camera raws beyond what their own tags say.
#pragma once

#include "platform/fact_list.h"
#include "platform/random_access_file.h"

namespace kelvane::linux_os {

struct RawSize {
    std::uint32_t width = 0;  // as the sensor saw it, not turned; 0: the file is no camera raw
    std::uint32_t height = 0;
};

// Nothing of the picture is unpacked. Adds what is not known yet of the camera and how it was set.
[[nodiscard]] RawSize addRawFacts(RandomAccessFile& file, FactList& facts);

}  // namespace kelvane::linux_os
