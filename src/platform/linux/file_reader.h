// Reading a regular file from its beginning to its end.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "base/result.h"
#include "platform/file_system.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

struct OpenFile {
    FileHandle handle;
    std::uint64_t size = 0;  // as it was then
};

// For reading; wrongType for anything but a regular file. Never waits for the other end of a pipe.
[[nodiscard]] Result<OpenFile> openRegularFile(const std::filesystem::path& path, Links links);

// A small file costs four system calls: open, fstat, pread, close.
[[nodiscard]] Result<std::unique_ptr<ContentReader>>
readRegularFile(const std::filesystem::path& path, ReadPattern pattern, Links links, Volumes& volumes);

}  // namespace kelvane::linux_os
