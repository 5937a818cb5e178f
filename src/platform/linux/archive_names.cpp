#include "platform/linux/archive_names.h"

#include <algorithm>
#include <array>

#include "base/words.h"

namespace kelvane::linux_os {
namespace {

constexpr auto archiveExtensions = std::to_array<std::string_view>(
    {".7z",  ".ar",  ".cab", ".cpio", ".deb", ".iso", ".lha", ".lzh",  ".rar", ".rpm", ".tar",
     ".taz", ".tb2", ".tbz", ".tbz2", ".tgz", ".tlz", ".txz", ".tzst", ".xar", ".zip"});

// What packing adds to the name of one of the containers below.
constexpr auto packedExtensions =
    std::to_array<std::string_view>({".bz2", ".gz", ".lz", ".lz4", ".lzma", ".xz", ".z", ".zst"});
constexpr auto packedContainers = std::to_array<std::string_view>({".tar", ".cpio"});

constexpr int deepest = 100;

template <std::size_t count>
bool holds(const std::array<std::string_view, count>& list, std::string_view word)
{
    return std::find(list.begin(), list.end(), word) != list.end();
}

// Empty for a name without one, ".zip" being a name and no extension.
std::string_view extensionOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot);
}

}  // namespace

bool isArchiveName(std::string_view fileName)
{
    const std::string lowered = asciiLower(fileName);
    std::string_view name = lowered;
    const std::string_view extension = extensionOf(name);
    if (holds(archiveExtensions, extension))
        return true;
    if (!holds(packedExtensions, extension))
        return false;
    name.remove_suffix(extension.size());
    return holds(packedContainers, extensionOf(name));
}

std::optional<std::string> safeEntryPath(std::string_view stored)
{
    if (stored.starts_with('/') || stored.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::string path;
    int depth = 0;
    while (!stored.empty()) {
        const std::size_t end = std::min(stored.find('/'), stored.size());
        const std::string_view part = stored.substr(0, end);
        stored.remove_prefix(std::min(end + 1, stored.size()));
        if (part.empty() || part == ".")
            continue;
        if (part == ".." || ++depth > deepest + 1)
            return std::nullopt;
        if (!path.empty())
            path += '/';
        path += part;
    }
    return path.empty() ? std::nullopt : std::optional(std::move(path));
}

}  // namespace kelvane::linux_os
