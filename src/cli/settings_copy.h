// Settings between the place in force and an INI file.
#pragma once

#include <string>

#include "app/registry_access.h"
#include "cli/console.h"

namespace kelvane {

// All that is stored goes to the file. An existing file is refused unless it may be written over: then what it holds
// of our own is replaced, and the rest of it stays.
[[nodiscard]] ExitCode exportSettings(CRegistryAccess& settings, const std::string& file, bool overwrite,
                                      Platform& platform, const Console& console);

// All that the file holds, or nothing when a write fails. What was skipped is named, and makes the import incomplete.
[[nodiscard]] ExitCode importSettings(CRegistryAccess& settings, const std::string& file, Platform& platform,
                                      const Console& console);

}  // namespace kelvane
