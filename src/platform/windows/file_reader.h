// Reading a regular file from its beginning to its end.
#pragma once

#include <filesystem>
#include <memory>

#include "base/result.h"
#include "platform/file_system.h"

namespace kelvane::windows_os {

// As FileSystem::openForReading. Nobody is kept from writing, renaming or deleting the file meanwhile.
[[nodiscard]] Result<std::unique_ptr<ContentReader>> openRegularFile(const std::filesystem::path& path,
                                                                     ReadPattern pattern, Links links);

// The same for a path in the system's form, ":stream" at its end included.
[[nodiscard]] Result<std::unique_ptr<ContentReader>> openContents(const std::wstring& systemPath, ReadPattern pattern,
                                                                  Links links);

}  // namespace kelvane::windows_os
