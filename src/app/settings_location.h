// Where settings are kept: which place is in use, and how it is chosen.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/places.h"

namespace kelvane {

// A registry key, or an INI file; exactly one of the two is in use.
struct SettingsLocation {
    std::u16string keyPath;         // under the person's own hive; empty in INI mode
    std::filesystem::path iniPath;  // empty in registry mode
    [[nodiscard]] bool isIni() const { return !iniPath.empty(); }
    friend bool operator==(const SettingsLocation&, const SettingsLocation&) = default;
};

inline constexpr std::u16string_view settingsKeyPath = u"Software\\Ostravenil Plc\\Kelvane";

[[nodiscard]] SettingsLocation registryLocation();

// Whether a path names its place in full. On Windows a path with a colon does too ("c:kelvane.ini").
[[nodiscard]] bool namesPlaceInFull(const std::filesystem::path& path);

// The file that the switch /I names: ".ini" is added to a name that does not end so, and a name that is no full path
// is meant beside the program.
[[nodiscard]] std::filesystem::path namedIniFile(const std::filesystem::path& argument, const Places& places);

// The person's own INI file, where settings go that leave the registry: in "morlix" in the settings folder.
[[nodiscard]] std::filesystem::path personalIniFile(const Places& places);

// `argument` is the text after "/I:", empty when none was given: then the person's own INI file if it exists, the one
// beside the program if that exists, else the registry.
[[nodiscard]] SettingsLocation chooseSettingsLocation(const std::filesystem::path& argument, const Places& places,
                                                      FileSystem& files);

}  // namespace kelvane
