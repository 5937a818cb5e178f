// Puts a finished dump in its place.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/result.h"

namespace kelvane::linux_os {

// Replaces the file in one step; only its owner may read it, since memory holds what a person was working on. What
// fails leaves an older dump as it was, and no other file.
[[nodiscard]] Status writeDumpFile(const std::string& path, std::span<const std::byte> bytes);

}  // namespace kelvane::linux_os
