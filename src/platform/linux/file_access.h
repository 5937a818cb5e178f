// Who may read and write a file.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::linux_os {

// What holds the access list of a file, see acl(5).
inline constexpr const char* accessListAttribute = "system.posix_acl_access";

// Gives `to` the owner, group, mode and access list of `from`, as far as the caller may. A right that was meant for a
// group or an owner which `to` cannot have is left out: nobody gains any.
[[nodiscard]] Status copyAccessRights(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace kelvane::linux_os
