// Reading a regular file from its beginning to its end.
#pragma once

#include <filesystem>
#include <memory>

#include "base/result.h"
#include "platform/file_system.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

// A small file costs four system calls: open, fstat, pread, close.
[[nodiscard]] Result<std::unique_ptr<ContentReader>>
openRegularFile(const std::filesystem::path& path, ReadPattern pattern, Links links, Volumes& volumes);

}  // namespace kelvane::linux_os
