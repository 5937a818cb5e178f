// A program beside this one that shows how two files differ.
#pragma once

#include <filesystem>
#include <string>

#include "platform/file_system.h"

namespace kelvane {

// The first one by name that matches "*diff*.exe", or where programs have no extension is executable and matches
// "*diff*"; empty when there is none.
[[nodiscard]] std::u16string findComparisonTool(const std::filesystem::path& folder, FileSystem& files);

}  // namespace kelvane
