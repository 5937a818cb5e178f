// New names for files: hard and symbolic links.
#pragma once

#include <filesystem>
#include <string>

#include "base/result.h"

namespace kelvane::linux_os {

// A further name for an open file, in an open folder. `notSupported` where the file system has no such links.
[[nodiscard]] Status linkOpenFile(int file, int folder, const std::string& name);
[[nodiscard]] Status makeSymbolicLink(const std::filesystem::path& target, int folder, const std::string& name);

}  // namespace kelvane::linux_os
