// Reading a regular file from its beginning to its end.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "base/result.h"
#include "platform/file_system.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {

// The open handle of a regular file, for reading; a path in the system's form. Nobody is kept from writing, renaming or
// deleting the file meanwhile.
[[nodiscard]] Result<Handle> openRegularHandle(const std::wstring& systemPath, ReadPattern pattern, Links links);

// Fewer bytes than asked for mean the end.
[[nodiscard]] Result<std::size_t> readAt(HANDLE file, std::uint64_t offset, std::span<std::byte> buffer);

// As FileSystem::openForReading. Nobody is kept from writing, renaming or deleting the file meanwhile.
[[nodiscard]] Result<std::unique_ptr<ContentReader>> openRegularFile(const std::filesystem::path& path,
                                                                     ReadPattern pattern, Links links);

// The same for a path in the system's form, ":stream" at its end included.
[[nodiscard]] Result<std::unique_ptr<ContentReader>> openContents(const std::wstring& systemPath, ReadPattern pattern,
                                                                  Links links);

}  // namespace kelvane::windows_os
