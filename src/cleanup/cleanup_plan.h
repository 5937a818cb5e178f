// What a clean-up is going to do, one command for each marked item: made first, shown to the person, then carried out.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "base/text_table.h"
#include "engine/scan_node.h"
#include "platform/path_rules.h"
#include "results/results_model.h"

namespace kelvane {

enum class CleanupAction : std::uint8_t { recycle, deletePermanently, link };

enum class LinkKind : std::uint8_t {
    none,
    automatic,  // a clone where the volume can, hard on one volume, else symbolic
    hard,
    symbolic,
    clone,  // a copy that shares its blocks with the kept file
};

// The kinds of links that a command may fall back to, tried in this order.
namespace link_way {
inline constexpr std::uint8_t clone = 1;
inline constexpr std::uint8_t hard = 2;
inline constexpr std::uint8_t symbolic = 4;
}  // namespace link_way

// What of an item's own a link in its place would not keep.
namespace metadata_loss {
inline constexpr std::uint8_t owner = 1;
inline constexpr std::uint8_t permissions = 2;
inline constexpr std::uint8_t times = 4;
inline constexpr std::uint8_t attributes = 8;  // extended attributes, alternate data streams, access lists
}  // namespace metadata_loss

struct CleanupRequest {
    CleanupAction action = CleanupAction::recycle;
    LinkKind link = LinkKind::none;  // `none` counts as automatic when links are asked for
    bool noHardLinks = false;        // for automatic links: none of these
    bool noSymbolicLinks = false;    // for automatic links: never fall back to symbolic ones
};

struct CleanupCommand {
    ItemId item{};
    ItemId kept{};  // the original of the group: what a link leads to, and what must survive a deletion
    std::uint32_t group = 0;
    CleanupAction action = CleanupAction::recycle;
    LinkKind link = LinkKind::none;  // `automatic` only where the list does not tell whether volumes are the same
    bool approximate = false;        // the group was never compared in full
    std::uint8_t ways = 0;           // bits of link_way: those that the request allows for this item
    bool joinedByHand = false;       // no scan put the two into one group
    std::uint8_t loses = 0;          // bits of metadata_loss by `link`, where the facts tell
    bool sameFile = false;           // item and kept are two names of one file, safe only while it has both
    std::uint64_t bytes = 0;         // the item's size
    std::uint64_t frees = 0;         // of it, what comes free: 0 for a name of a file that keeps another name
    friend bool operator==(const CleanupCommand&, const CleanupCommand&) = default;
};

// Why a marked item is left alone.
enum class CleanupObstacle : std::uint8_t {
    inArchive,
    keptInArchive,    // no link leads there, and nobody would look for the only copy there
    linkedAlready,    // is a name of the kept file
    otherVolume,      // for hard links and clones
    otherSize,        // no link can stand for it: such files were put into one group by hand
    linksOff,         // by the settings
    maybeKeptItself,  // reached through a link, one of the two may lead to the other
    changed,          // since the scan, or gone
    keptChanged,      // likewise the kept file
    noTrash           // its volume has none, and nobody asked to delete for good
};

struct CleanupSkip {
    ItemId item{};
    CleanupObstacle why{};
    friend bool operator==(CleanupSkip, CleanupSkip) = default;
};

struct CleanupPlan {
    CleanupAction action = CleanupAction::recycle;  // differs from the request's for folders, which are never linked
    std::vector<CleanupCommand> commands;           // in the order of the list
    std::vector<CleanupSkip> skipped;               // likewise
    MarkSum marked;                                 // the items of both
    std::uint64_t frees = 0;      // by all commands; what is recycled comes free when the trash is emptied
    bool allInFileSystem = true;  // of the marked items
    bool anyOnNetwork = false;    // likewise
    // Every deletion can be taken back from the trash.
    [[nodiscard]] bool canBeUndone() const;
};

// What the list does not say of a file. Functions may be empty; they are asked about marked items only.
struct CleanupFacts {
    const CScanNode& definition;  // of the scan that made the list
    const PathRules& paths;
    std::function<bool(const ShellItem&)> onNetwork = nullptr;             // besides network paths
    std::function<std::uint32_t(const ShellItem&)> linkCount = nullptr;    // names of the file; 0: unknown
    std::function<bool(const ShellItem&)> canClone = nullptr;              // its volume can share blocks
    std::function<std::uint64_t(const ShellItem&)> sharedBytes = nullptr;  // of the file, with other files
    std::function<std::uint8_t(const ShellItem& item, const ShellItem& kept)> metadataLoss = nullptr;
};

// Plans for the marked rows in view; nothing is looked up on a disk but by the facts' functions. The same list and
// marks give the same plan. Fails with a text for people: `invalid` when the list is not grouped or a group has no
// unmarked row in view; `notSupported` when links were asked for and are not possible for these items or this scan.
[[nodiscard]] Result<CleanupPlan> planCleanup(const ResultsModel& model, const CleanupRequest& request,
                                              const CleanupFacts& facts);

// Which row of a group in view the marked ones stand for: the one before the first marked row, else the first unmarked
// one after it. Nothing when none or all are marked.
[[nodiscard]] std::optional<ItemId> groupOriginal(const ResultsModel& model, std::span<const ItemId> group);

// Fixed names for programs: "recycle", "delete", "link"; "none", "auto", "hard", "symbolic", "clone"; "inArchive" ...
[[nodiscard]] std::string_view nameOf(CleanupAction action);
[[nodiscard]] std::string_view nameOf(LinkKind kind);
[[nodiscard]] std::string_view nameOf(CleanupObstacle obstacle);
// The words for people, to be put behind a path.
[[nodiscard]] TextId textOf(CleanupObstacle obstacle);

}  // namespace kelvane
