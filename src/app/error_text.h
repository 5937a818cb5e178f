// What went wrong with a file, in words.
#pragma once

#include <string>

#include "base/result.h"

namespace kelvane {

// The system's own text where there is one, else the kind in words.
[[nodiscard]] std::string errorText(const Error& error);

}  // namespace kelvane
