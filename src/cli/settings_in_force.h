// Which settings a run of the console program goes by. It reads them; only the verbs `settings` and `ignore` write any,
// and no run counts as a use of the program.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "app/registry_access.h"
#include "cli/console.h"
#include "engine/engine_options.h"

namespace kelvane {

// A file that was named on the command line; absolute.
[[nodiscard]] std::filesystem::path namedFile(const std::string& typed);

enum class NamedSettings { mustExist, mayBeNew };

// Those of the INI file, or with an empty name those that the desktop program goes by. Loaded; a damaged place is
// named on the error stream. The error is one to show.
[[nodiscard]] Result<std::unique_ptr<CRegistryAccess>> settingsInForce(const std::string& iniFile, NamedSettings named,
                                                                       Platform& platform, const Console& console);

// Names the place and the reason; gives the exit code for it.
[[nodiscard]] ExitCode complainNotWritten(const CRegistryAccess& settings, SettingsCode code, const Console& console);

// What a scan takes from them.
struct ScanSettings {
    EngineOptions options;
    Settings settings;
};
[[nodiscard]] Result<ScanSettings> scanSettings(const std::string& iniFile, Platform& platform, const Console& console);

// What a comparison or a description takes from them.
[[nodiscard]] Result<EngineOptions> engineSettings(const std::string& iniFile, Platform& platform,
                                                   const Console& console);

}  // namespace kelvane
