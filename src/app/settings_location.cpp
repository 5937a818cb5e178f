#include "app/settings_location.h"

#include "base/words.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr const char* iniName = "kelvane.ini";
constexpr bool drivesHaveColons = std::filesystem::path::preferred_separator == '\\';

bool isFile(const std::filesystem::path& path, FileSystem& files)
{
    const auto details = files.details(path, Links::followed);
    return details && details->kind == FileKind::regular;
}

}  // namespace

SettingsLocation registryLocation()
{
    return {std::u16string(settingsKeyPath), {}};
}

bool namesPlaceInFull(const std::filesystem::path& path)
{
    return path.is_absolute() || (drivesHaveColons && path.native().find(':') != NativeString::npos);
}

std::filesystem::path namedIniFile(const std::filesystem::path& argument, const Places& places)
{
    std::filesystem::path path = argument;
    if (asciiLower(bytesFromNative(path.extension().native())) != ".ini")
        path += ".ini";
    return namesPlaceInFull(path) ? path : places.programFolder() / path;
}

std::filesystem::path personalIniFile(const Places& places)
{
    return places.settingsFolder() / "morlix" / iniName;
}

SettingsLocation chooseSettingsLocation(const std::filesystem::path& argument, const Places& places, FileSystem& files)
{
    if (!argument.empty())
        return {{}, namedIniFile(argument, places)};
    for (const auto& path : {personalIniFile(places), places.programFolder() / iniName}) {
        if (isFile(path, files))
            return {{}, path};
    }
    return registryLocation();
}

}  // namespace kelvane
