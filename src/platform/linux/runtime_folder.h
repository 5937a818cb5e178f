// The folder in which the instances of one person's program find each other.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane::linux_os {

// Where such a folder may be; absolute paths.
struct RuntimePlaces {
    std::filesystem::path offered;    // by the session ($XDG_RUNTIME_DIR); may be empty
    std::filesystem::path temporary;  // open to everybody
};

// The offered folder when it is ours alone, else "kelvane-<uid>" in the temporary one. `notFound` when that does not
// exist; `accessDenied` when it is a link, somebody else's, or open to others, since whoever could write there could
// stand in for the program.
[[nodiscard]] Result<std::filesystem::path> findRuntimeFolder(const RuntimePlaces& places);

// The same, but the folder is made where it is missing.
[[nodiscard]] Result<std::filesystem::path> makeRuntimeFolder(const RuntimePlaces& places);

}  // namespace kelvane::linux_os
