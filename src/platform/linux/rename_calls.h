// Changes of names in one step, and what stands in for them where a file system has no such step.
#pragma once

#include <string>

#include "base/result.h"

namespace kelvane::linux_os {

// A name in an open folder.
struct NameIn {
    int folder;
    std::string name;
};

[[nodiscard]] Status exchangeNames(int folder, const std::string& a, const std::string& b);

// Never takes the place of anything: `exists` when `to` is taken. Moves files, links and folders, within one mount.
[[nodiscard]] Status renameToFree(const NameIn& from, const NameIn& to);

// The same where the file system knows only renaming that replaces. A crash within leaves both names, or an empty file
// or folder of the new one, and never loses what is moved.
[[nodiscard]] Status renameToFreeBySteps(const NameIn& from, const NameIn& to);

}  // namespace kelvane::linux_os
