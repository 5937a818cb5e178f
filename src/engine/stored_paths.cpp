#include "engine/stored_paths.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::string_view extendedMark = "\\\\?\\";
constexpr std::string_view extendedShare = "\\\\?\\UNC\\";

std::size_t nextSeparator(std::string_view path, std::size_t from, char separator)
{
    while (from < path.size() && !separates(path[from], separator))
        ++from;
    return from;
}

// Behind so many names and the separator after the last one; 0 when there are fewer.
std::size_t behindNames(std::string_view path, std::size_t from, unsigned names, char separator)
{
    for (; names > 0; --names) {
        const std::size_t end = nextSeparator(path, from, separator);
        if (end == from)
            return 0;
        from = std::min(end + 1, path.size());
    }
    return from;
}

// Calls take(name, where it ends) for each name until that gives false; whether it never did.
template <class Take>
bool forEachName(std::string_view path, char separator, Take take)
{
    for (std::size_t from = 0;;) {
        const std::size_t end = nextSeparator(path, from, separator);
        if (!take(path.substr(from, end - from), end))
            return false;
        if (end == path.size())
            return true;
        from = end + 1;
    }
}

}  // namespace

std::size_t rootLength(std::string_view path, char separator)
{
    if (separator == '/')
        return path.starts_with('/') ? 1 : 0;
    if (path.starts_with(extendedShare))
        return behindNames(path, extendedShare.size(), 2, separator);
    if (path.starts_with(extendedMark))
        return behindNames(path, extendedMark.size(), 1, separator);
    if (path.size() > 2 && separates(path[0], separator) && separates(path[1], separator))
        return behindNames(path, 2, 2, separator);
    return path.size() > 2 && path[1] == ':' && separates(path[2], separator) ? 3 : 0;
}

bool isSoundPath(std::string_view path, Detours detours, char separator)
{
    const bool colons = separator == '/';
    if (path.find('\0') != std::string_view::npos || (!colons && path.find(':') != std::string_view::npos))
        return false;
    return forEachName(path, separator, [&](std::string_view name, std::size_t) {
        return !name.empty() && name != "." && (name != ".." || detours == Detours::allowed);
    });
}

bool isSoundAbsolutePath(std::string_view path, Detours detours, char separator)
{
    const std::size_t root = rootLength(path, separator);
    if (root == 0 || path.substr(0, root).find('\0') != std::string_view::npos)
        return false;
    return root == path.size() || isSoundPath(path.substr(root), detours, separator);
}

std::size_t detourEnd(std::string_view path, char separator)
{
    std::size_t last = 0;
    forEachName(path, separator, [&](std::string_view name, std::size_t end) {
        last = name == ".." ? end : last;
        return true;
    });
    return last;
}

std::string_view folderPart(std::string_view path, char separator)
{
    const std::size_t root = rootLength(path, separator);
    std::size_t end = path.size();
    while (end > root && !separates(path[end - 1], separator))
        --end;
    return end == path.size() ? std::string_view() : path.substr(0, end);
}

std::string_view commonFolder(std::string_view folder, std::string_view path, char separator)
{
    const auto differ = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first;
    auto length = static_cast<std::size_t>(differ - folder.begin());
    while (length > 0 && !separates(folder[length - 1], separator))
        --length;
    return length < rootLength(folder, separator) ? std::string_view() : folder.substr(0, length);
}

std::string_view withoutEndSeparator(std::string_view folder, char separator)
{
    const bool isRoot = folder.size() <= rootLength(folder, separator);
    return isRoot ? folder : folder.substr(0, folder.size() - 1);
}

}  // namespace kelvane
