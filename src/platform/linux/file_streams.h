// Alternate data streams: the extended attributes of the user namespace.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "base/result.h"

namespace kelvane::linux_os {

// None on a file system that keeps no extended attributes.
[[nodiscard]] Result<std::vector<std::string>> listStreams(const std::filesystem::path& path);

[[nodiscard]] Result<std::vector<std::byte>> readWholeStream(const std::filesystem::path& path, const std::string& name,
                                                             std::size_t limit);

}  // namespace kelvane::linux_os
