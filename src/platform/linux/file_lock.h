// A lock between processes and threads, kept by a small file beside the file that it guards.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "platform/file_output.h"

namespace kelvane::linux_os {

// `path` is the guarded file, not a link. The lock's own file goes away with the lock; a person may delete it at any
// time: whoever waits notices.
[[nodiscard]] Result<std::unique_ptr<FileLock>> lockBeside(const std::filesystem::path& path,
                                                           std::uint32_t milliseconds);

}  // namespace kelvane::linux_os
