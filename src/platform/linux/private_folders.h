// Folders for what is the person's own.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::linux_os {

// With those above it, each for its owner alone, as the XDG base directory specification asks for; one that is there
// stays as it is. 0 or an errno value.
[[nodiscard]] int makePrivateFolders(const std::filesystem::path& folder);

// For a folder whose contents are believed: it must belong to the person, and nobody else may change it. notFound where
// it is missing.
[[nodiscard]] Status checkOwnFolder(const std::filesystem::path& folder);

// The same, after it was made where it is missing.
[[nodiscard]] Status makeOwnFolder(const std::filesystem::path& folder);

}  // namespace kelvane::linux_os
