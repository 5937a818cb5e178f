#include "platform/library_versions.h"

#include <archive.h>
#include <pugixml.hpp>
#include <seccomp.h>
#include <sqlite3.h>
#include <unicode/uversion.h>
#include <xxhash.h>
#include <zlib.h>
#include <zstd.h>

namespace kelvane {
namespace {

std::string numbers(unsigned major, unsigned minor, unsigned patch)
{
    return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(patch);
}

std::string icuVersion()
{
    UVersionInfo version;
    char text[U_MAX_VERSION_STRING_LENGTH];
    ::u_getVersion(version);
    ::u_versionToString(version, text);
    return text;
}

// "libarchive 3.6.2" without its name.
std::string archiveVersion()
{
    const std::string text = ::archive_version_string();
    return text.substr(text.rfind(' ') + 1);
}

std::string seccompVersion()
{
    const scmp_version* const version = ::seccomp_version();
    return version != nullptr ? numbers(version->major, version->minor, version->micro) : std::string();
}

}  // namespace

std::vector<LibraryVersion> libraryVersions()
{
    constexpr unsigned thousand = 1'000, hundred = 100, ten = 10;
    std::vector<LibraryVersion> versions{
        {"ICU", icuVersion()},
        {"SQLite", ::sqlite3_libversion()},
        {"libarchive", archiveVersion()},
        {"pugixml", numbers(PUGIXML_VERSION / thousand, PUGIXML_VERSION / ten % hundred, PUGIXML_VERSION % ten)},
        {"xxHash", numbers(XXH_VERSION_MAJOR, XXH_VERSION_MINOR, XXH_VERSION_RELEASE)},
        {"zlib", ::zlibVersion()},
        {"zstd", ::ZSTD_versionString()},
        {"libseccomp", seccompVersion()},
    };
    // KELVANE_MEDIA_LIBRARIES: {"name", "version"}, for each of them, see media/CMakeLists.txt.
    for (const auto& [name, version] : std::initializer_list<LibraryVersion>{KELVANE_MEDIA_LIBRARIES})
        versions.push_back({name, version});
    return versions;
}

}  // namespace kelvane
