// Two names of one physical file.
#pragma once

#include "platform/path_rules.h"
#include "platform/shell_item.h"

namespace kelvane {

// Whether the file's identity says which physical file it is: only then can two names of it be known to be one.
[[nodiscard]] bool hasIdentity(const ShellItem& item) noexcept;

// True when the full paths are the same by the system's rules, or when both are files of the file system with the same
// known identity (volume and index). A link that was followed carries the identity of what it leads to, so a link
// and its target are one file. Entries of archives are the same by path only.
[[nodiscard]] bool sameFile(const ShellItem& a, const ShellItem& b, const PathRules& rules);

}  // namespace kelvane
