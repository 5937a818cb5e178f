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

std::uint8_t wayOf(LinkKind kind)
{
    if (kind == LinkKind::clone)
        return link_way::clone;
    return kind == LinkKind::hard ? link_way::hard : link_way::symbolic;
}

std::uint8_t automaticWays(bool oneVolume, bool canClone, const CleanupRequest& request)
{
    const unsigned clone = oneVolume && canClone ? link_way::clone : 0U;
    const unsigned hard = oneVolume && !request.noHardLinks ? link_way::hard : 0U;
    const unsigned symbolic = request.noSymbolicLinks ? 0U : link_way::symbolic;
    return static_cast<std::uint8_t>(clone | hard | symbolic);
}

// Trying decides where nobody knows whether a link that needs one volume is possible.
LinkKind firstOf(std::uint8_t ways, bool volumesKnown)
{
    if (!volumesKnown && (ways & link_way::symbolic) != 0 && ways != link_way::symbolic)
        return LinkKind::automatic;
    if ((ways & link_way::clone) != 0)
        return LinkKind::clone;
    return (ways & link_way::hard) != 0 ? LinkKind::hard : LinkKind::symbolic;
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

std::variant<LinkChoice, CleanupObstacle> chooseLink(const ShellItem& item, const ShellItem& kept,
                                                     const CleanupRequest& request, const CleanupFacts& facts)
{
    if (!kept.inFileSystem())
        return CleanupObstacle::keptInArchive;
    if (item.info().size != kept.info().size)
        return CleanupObstacle::otherSize;
    const LinkKind kind = wanted(request);
    const std::optional<bool> sameVolume = onSameVolume(item, kept, facts.paths);
    const bool oneVolume = sameVolume.value_or(true);
    const bool canClone = kind == LinkKind::automatic && oneVolume && facts.canClone && facts.canClone(item);
    const std::uint8_t ways = kind == LinkKind::automatic ? automaticWays(oneVolume, canClone, request) : wayOf(kind);
    if (isSameFile(item, kept) && (ways != link_way::symbolic || isLinkItself(item)))
        return CleanupObstacle::linkedAlready;
    if (ways == 0)
        return request.noHardLinks ? CleanupObstacle::linksOff : CleanupObstacle::otherVolume;
    if (kind != LinkKind::automatic && kind != LinkKind::symbolic && !oneVolume)
        return CleanupObstacle::otherVolume;
    return LinkChoice{kind == LinkKind::automatic ? firstOf(ways, sameVolume.has_value()) : kind, ways};
}

}  // namespace kelvane
