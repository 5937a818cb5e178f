// Alternate data streams.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "base/result.h"

namespace kelvane::windows_os {

// In WTF-8, without the unnamed stream that holds the contents. None on a file system that keeps no streams.
[[nodiscard]] Result<std::vector<std::string>> listStreams(const std::filesystem::path& path);

[[nodiscard]] Result<std::vector<std::byte>> readWholeStream(const std::filesystem::path& path, const std::string& name,
                                                             std::size_t limit);

}  // namespace kelvane::windows_os
