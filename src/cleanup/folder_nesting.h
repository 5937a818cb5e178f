// Whether one place lies within another, whatever names lead there.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/file_system.h"

namespace kelvane {

// Whether `wanted` holds for the identity of some folder above the path: both of those that its text names and of those
// that it really lies in when links are on the way. The path's own end is not asked about. A folder that cannot be
// looked at counts as none.
[[nodiscard]] bool anyFolderAbove(const std::filesystem::path& path, FileSystem& files,
                                  const std::function<bool(FileIdentity)>& wanted);

}  // namespace kelvane
