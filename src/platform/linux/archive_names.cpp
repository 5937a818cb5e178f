#include "platform/linux/archive_names.h"

#include <algorithm>
#include <array>

#include "base/words.h"

namespace kelvane::linux_os {
namespace {

using namespace std::string_view_literals;

constexpr std::array archiveExtensions{
    ".7z"sv,  ".ar"sv,  ".cab"sv, ".cpio"sv, ".deb"sv, ".iso"sv, ".lha"sv, ".lzh"sv,  ".rar"sv, ".rpm"sv, ".tar"sv,
    ".taz"sv, ".tb2"sv, ".tbz"sv, ".tbz2"sv, ".tgz"sv, ".tlz"sv, ".txz"sv, ".tzst"sv, ".xar"sv, ".zip"sv,
};

// What packing adds to the name of one of the containers below.
constexpr std::array packedExtensions{
    ".bz2"sv, ".gz"sv, ".lz"sv, ".lz4"sv, ".lzma"sv, ".xz"sv, ".z"sv, ".zst"sv,
};
constexpr std::array packedContainers{".tar"sv, ".cpio"sv};

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
