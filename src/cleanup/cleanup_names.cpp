// What actions, links and obstacles are called.
#include "cleanup/cleanup_plan.h"

namespace kelvane {

std::string_view nameOf(CleanupAction action)
{
    switch (action) {
    case CleanupAction::recycle:
        return "recycle";
    case CleanupAction::deletePermanently:
        return "delete";
    case CleanupAction::link:
        return "link";
    }
    return {};
}

std::string_view nameOf(LinkKind kind)
{
    switch (kind) {
    case LinkKind::none:
        return "none";
    case LinkKind::automatic:
        return "auto";
    case LinkKind::hard:
        return "hard";
    case LinkKind::symbolic:
        return "symbolic";
    case LinkKind::clone:
        return "clone";
    }
    return {};
}

std::string_view nameOf(CleanupObstacle obstacle)
{
    switch (obstacle) {
    case CleanupObstacle::inArchive:
        return "inArchive";
    case CleanupObstacle::keptInArchive:
        return "keptInArchive";
    case CleanupObstacle::linkedAlready:
        return "linkedAlready";
    case CleanupObstacle::otherVolume:
        return "otherVolume";
    case CleanupObstacle::otherSize:
        return "otherSize";
    case CleanupObstacle::linksOff:
        return "linksOff";
    case CleanupObstacle::maybeKeptItself:
        return "maybeKeptItself";
    case CleanupObstacle::changed:
        return "changed";
    case CleanupObstacle::keptChanged:
        return "keptChanged";
    case CleanupObstacle::noTrash:
        return "noTrash";
    }
    return {};
}

TextId textOf(CleanupObstacle obstacle)
{
    switch (obstacle) {
    case CleanupObstacle::inArchive:
        return TextId::skippedInArchive;
    case CleanupObstacle::keptInArchive:
        return TextId::skippedKeptInArchive;
    case CleanupObstacle::linkedAlready:
        return TextId::skippedLinkedAlready;
    case CleanupObstacle::otherVolume:
        return TextId::skippedOtherVolume;
    case CleanupObstacle::otherSize:
        return TextId::skippedOtherSize;
    case CleanupObstacle::linksOff:
        return TextId::skippedLinksOff;
    case CleanupObstacle::changed:
        return TextId::skippedChanged;
    case CleanupObstacle::keptChanged:
        return TextId::skippedKeptChanged;
    case CleanupObstacle::noTrash:
        return TextId::skippedNoTrash;
    case CleanupObstacle::maybeKeptItself:
        break;
    }
    return TextId::skippedMaybeKept;
}

}  // namespace kelvane
