// Whether a file still is the one that was seen before.
#pragma once

#include <filesystem>

#include "cleanup/cleanup_fault.h"
#include "platform/file_info.h"
#include "platform/shell_item.h"

namespace kelvane {

// Kind, modification time, of files the size, and where both are known the identity.
[[nodiscard]] bool isAsSeen(const FileInfo& now, const FileInfo& then);

// Both are known and one.
[[nodiscard]] bool areOneFile(FileIdentity a, FileIdentity b);

// Why a look at a file failed: what is gone or became something else is `changed` (or what stands for it).
[[nodiscard]] CleanupFailure lookFailure(const Error& error, CleanupFault changed);

// The folder that holds the item, and its name there.
struct ItemPlace {
    std::filesystem::path folder;
    NativeString name;
};
[[nodiscard]] ItemPlace placeOf(const ShellItem& item);
[[nodiscard]] ItemPlace placeOf(const std::filesystem::path& path);

// The scan went through a link to the item and describes what it leads to.
[[nodiscard]] bool isSeenThroughLink(const ShellItem& item);

}  // namespace kelvane
