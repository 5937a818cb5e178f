// What settling tells a person.
#pragma once

#include <string>
#include <vector>

#include "cleanup/settle.h"

namespace kelvane {

// Lines in UTF-8, paths as their bytes.
[[nodiscard]] std::vector<std::string> settledLines(const SettledRun& run);

}  // namespace kelvane
