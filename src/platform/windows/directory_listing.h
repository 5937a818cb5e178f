// Listing a folder.
#pragma once

#include "platform/file_system.h"

namespace kelvane::windows_os {

// As FileSystem::enumerate.
[[nodiscard]] Status listFolder(const std::filesystem::path& folder, Links links, const FileSystem::EntrySink& sink);

// The same for servers that tell no identities when they list: those of the entries stay unknown.
[[nodiscard]] Status listWithoutIdentities(const std::filesystem::path& folder, Links links,
                                           const FileSystem::EntrySink& sink);

}  // namespace kelvane::windows_os
