// The recycle bins of the volumes.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::windows_os {

// As FileOperations::canTrash and restore.
[[nodiscard]] Status canRecycle(const std::filesystem::path& path);
[[nodiscard]] Status restoreRecycled(const std::filesystem::path& trashed, const std::filesystem::path& place);

}  // namespace kelvane::windows_os
