#include "cleanup/item_links.h"

#include "base/words.h"
#include "platform/native_text.h"
#include "results/folder_text.h"

namespace kelvane {
namespace {

constexpr std::string_view serverPrefix = R"(\\)";

bool hasLinkAbove(const ShellItem& item)
{
    for (const ShellItem* folder = item.parent(); folder != nullptr; folder = folder->parent()) {
        if (folder->isReparsePoint())
            return true;
    }
    return false;
}

// "c:" of a path with a drive letter, else nothing.
std::string_view drive(std::string_view path)
{
    return path.size() > 1 && path[1] == ':' ? path.substr(0, 2) : std::string_view{};
}

// "\\server\share" of a network path.
std::string_view share(std::string_view path)
{
    const auto server = path.find('\\', serverPrefix.size());
    return path.substr(0, server == std::string_view::npos ? server : path.find('\\', server + 1));
}

LinkKind wanted(const CleanupRequest& request)
{
    return request.link == LinkKind::none ? LinkKind::automatic : request.link;
}

std::variant<LinkKind, CleanupObstacle> automaticLink(std::optional<bool> sameVolume, const CleanupRequest& request)
{
    const bool hardLinks = !request.noHardLinks && sameVolume.value_or(true);
    if (hardLinks && !sameVolume && !request.noSymbolicLinks)
        return LinkKind::automatic;
    if (hardLinks)
        return LinkKind::hard;
    if (request.noSymbolicLinks)
        return request.noHardLinks ? CleanupObstacle::linksOff : CleanupObstacle::otherVolume;
    return LinkKind::symbolic;
}

}  // namespace

bool isSameFile(const ShellItem& a, const ShellItem& b)
{
    return a.inFileSystem() && b.inFileSystem() && a.info().identity.known() && a.info().identity == b.info().identity;
}

bool isLinkItself(const ShellItem& item)
{
    return item.isReparsePoint() || item.info().kind == FileKind::link;
}

bool mayBeKeptItself(const ShellItem& item, const ShellItem& kept)
{
    // A link that was not followed describes itself, and nobody knows where it leads.
    if (kept.info().kind == FileKind::link)
        return true;
    if (isLinkItself(kept) || hasLinkAbove(kept))
        return isSameFile(item, kept) || !kept.info().identity.known();
    return isSameFile(item, kept) && hasLinkAbove(item);
}

std::optional<bool> onSameVolume(const ShellItem& a, const ShellItem& b, const PathRules& paths)
{
    if (a.info().identity.known() && b.info().identity.known())
        return a.info().identity.volume == b.info().identity.volume;
    const std::string pathA = comparablePath(a, paths), pathB = comparablePath(b, paths);
    if (!drive(pathA).empty() || !drive(pathB).empty())
        return asciiLower(drive(pathA)) == asciiLower(drive(pathB));
    if (pathA.starts_with(serverPrefix) && pathB.starts_with(serverPrefix))
        return share(pathA) == share(pathB);
    return std::nullopt;
}

bool hasNetworkPath(const ShellItem& item, const PathRules& paths)
{
    return withoutLongPrefix(bytesFromNative(item.fullName()), paths).starts_with(serverPrefix);
}

std::variant<LinkKind, CleanupObstacle> chooseLink(const ShellItem& item, const ShellItem& kept,
                                                   const CleanupRequest& request, const PathRules& paths)
{
    if (!kept.inFileSystem())
        return CleanupObstacle::keptInArchive;
    if (item.info().size != kept.info().size)
        return CleanupObstacle::otherSize;
    const LinkKind kind = wanted(request);
    const std::optional<bool> sameVolume = onSameVolume(item, kept, paths);
    const auto choice = kind == LinkKind::automatic ? automaticLink(sameVolume, request) : kind;
    const bool symbolic = std::holds_alternative<LinkKind>(choice) && std::get<LinkKind>(choice) == LinkKind::symbolic;
    if (isSameFile(item, kept) && (!symbolic || isLinkItself(item)))
        return CleanupObstacle::linkedAlready;
    if ((kind == LinkKind::hard || kind == LinkKind::clone) && !sameVolume.value_or(true))
        return CleanupObstacle::otherVolume;
    return choice;
}

}  // namespace kelvane
