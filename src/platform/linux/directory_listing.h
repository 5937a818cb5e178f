// Listing a folder.
#pragma once

#include "platform/file_system.h"
#include "platform/linux/volumes.h"

namespace kelvane::linux_os {

// As FileSystem::enumerate. An entry that cannot be looked at is left out; when it has not simply vanished the listing
// goes on and ends with the first such error.
[[nodiscard]] Status listFolder(const std::filesystem::path& folder, Links links, const FileSystem::EntrySink& sink,
                                Volumes& volumes);

}  // namespace kelvane::linux_os
