// Which trash a file goes to, after the Trash specification of freedesktop.org, version 1.0.
#pragma once

#include <filesystem>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// The two folders of one trash, and where it is.
struct TrashPlace {
    std::filesystem::path folder;  // absolute
    std::filesystem::path top;     // of its volume, which the paths in its notes are relative to; empty: the home trash
    FileHandle files;
    FileHandle info;
};

// Absolute; need not exist.
[[nodiscard]] std::filesystem::path homeTrash();

// The trash for what lies in this open folder; made where it is missing. `notSupported` with the reason where there
// can be none.
[[nodiscard]] Result<TrashPlace> openTrash(int folder);

// Whether openTrash() would find one or could make one; makes nothing.
[[nodiscard]] Status wouldOpenTrash(int folder);

// Whether an absolute path without links lies in some person's trash.
[[nodiscard]] bool liesInTrash(const std::filesystem::path& path);

}  // namespace kelvane::linux_os
