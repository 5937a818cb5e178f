// The one way in which the program writes sizes for people.
#pragma once

#include <functional>
#include <string>

#include "base/file_size.h"

namespace kelvane {

// "1 byte", "9728 bytes"; from 10 KB up in binary units (1 KB = 1024 bytes) with one decimal, rounded: "10.0 KB",
// "1.5 GB". Below that the exact number says more than a rounded one.
[[nodiscard]] std::string sizeText(FileSize size);

// How a text that a person sees has its sizes: as above, or with the decimal point of the place.
using SizeWords = std::function<std::string(FileSize)>;

}  // namespace kelvane
