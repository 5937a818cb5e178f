// The folders of the person, as the XDG base directory specification says.
#pragma once

#include <filesystem>

namespace kelvane::linux_os {

// Empty when the variable is not set; a relative path would mean another folder in each process, and counts as none.
[[nodiscard]] std::filesystem::path folderFromVariable(const char* variable);

// The folder in the variable, else this one of the home folder.
[[nodiscard]] std::filesystem::path xdgFolder(const char* variable, const char* belowHome);

}  // namespace kelvane::linux_os
