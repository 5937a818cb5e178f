// Who may read and write a file.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::linux_os {

// Gives `to` the owner, group, mode and access list of `from`, as far as the caller may. A right that was meant for a
// group or an owner which `to` cannot have is left out: nobody gains any.
[[nodiscard]] Status copyAccessRights(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kelvane::linux_os
