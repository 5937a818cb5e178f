// Who may do what with a file.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::windows_os {

// As FileOutput::copyAccess: the access list, and whether it takes from the folder's.
[[nodiscard]] Status copyAccessRights(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kelvane::windows_os
