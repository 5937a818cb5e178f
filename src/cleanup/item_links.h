// What an item and the kept item of its group are to one another, and which link can stand for the one.
#pragma once

#include <optional>
#include <variant>

#include "cleanup/cleanup_plan.h"

namespace kelvane {

// Both are known to be names of one file, by identity.
[[nodiscard]] bool isSameFile(const ShellItem& a, const ShellItem& b);

// The item is a symbolic link or another reparse point itself: taking it away touches no contents.
[[nodiscard]] bool isLinkItself(const ShellItem& item);

// One file by two paths of which a link is part, so that taking the item away may take the kept file.
[[nodiscard]] bool mayBeKeptItself(const ShellItem& item, const ShellItem& kept);

// By identities, else by drive letters, else by server and share; nothing when none of them tells.
[[nodiscard]] std::optional<bool> onSameVolume(const ShellItem& a, const ShellItem& b, const PathRules& paths);

// The path names a server.
[[nodiscard]] bool hasNetworkPath(const ShellItem& item, const PathRules& paths);

struct LinkChoice {
    LinkKind first = LinkKind::none;  // `automatic` where only trying tells which of the ways it is going to be
    std::uint8_t ways = 0;            // bits of link_way
};

[[nodiscard]] std::variant<LinkChoice, CleanupObstacle>
chooseLink(const ShellItem& item, const ShellItem& kept, const CleanupRequest& request, const CleanupFacts& facts);

}  // namespace kelvane
