// Folders that are known by an open handle: where they are, and what they belong to.
#pragma once

#include <cstdint>
#include <filesystem>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// For use in *at() calls only. Links on the way are followed.
[[nodiscard]] Result<FileHandle> openForNames(const std::filesystem::path& folder);

// The place where things can be renamed to and fro: a volume as it is seen at one mount point.
struct MountedVolume {
    std::uint64_t device = 0;
    std::uint64_t mount = 0;  // 0 where the kernel is too old to tell
    friend bool operator==(const MountedVolume&, const MountedVolume&) = default;
};
[[nodiscard]] Result<MountedVolume> mountedVolumeOf(int file);

// The topmost folder of the volume that a folder lies on.
[[nodiscard]] Result<FileHandle> topFolderOf(int folder);

// Absolute and without links, as the kernel knows it now; fails for paths that are too long for it.
[[nodiscard]] Result<std::filesystem::path> realPathOf(int file);

}  // namespace kelvane::linux_os
