// What has to hold before an item is taken back.
#include "base/filled_text.h"
#include "cleanup/settle_place.h"
#include "cleanup/undo.h"
#include "cleanup/undo_steps.h"

namespace kelvane {
namespace {

using Failure = std::optional<CleanupFailure>;

// Of a name that has to be there.
CleanupFailure missing(const Error& error)
{
    return {error.kind == ErrorKind::notFound ? CleanupFault::gone : CleanupFault::system, error};
}

bool sameContent(const FileInfo& now, const FileStamp& was)
{
    return now.size == was.size && now.modified == was.modified;
}

// The file whose bytes the link shows.
const FileStamp& contentOf(const JournalEntry& entry)
{
    return entry.link == LinkKind::clone ? entry.intent.itemWas : entry.intent.keptWas;
}

Failure notThatSymbolicLink(const HeldFolder& folder, NativeView name, FileKind kind, const JournalEntry& entry)
{
    if (kind != FileKind::link)
        return because(CleanupFault::placeTaken);
    const auto target = folder.readLink(name);
    if (!target)
        return missing(target.error());
    return *target == entry.intent.kept ? Failure{} : because(CleanupFault::placeTaken);
}

Result<std::unique_ptr<HeldFile>> openKept(const JournalEntry& entry, const PassPorts& ports)
{
    const std::filesystem::path& kept = entry.intent.kept;
    const auto folder = ports.held.openFolder(kept.parent_path());
    return folder ? folder.value()->open(kept.filename().native()) : folder.error();
}

CleanupFailure notOpened(const Error& error, CleanupFault otherKind)
{
    return error.kind == ErrorKind::wrongType ? because(otherKind) : missing(error);
}

Failure holdSource(SplitItem& item, const JournalEntry& entry, const PassPorts& ports)
{
    const bool elsewhere = entry.link == LinkKind::symbolic;
    auto opened = elsewhere ? openKept(entry, ports) : item.folder->open(item.name);
    if (!opened)
        return notOpened(opened.error(), elsewhere ? CleanupFault::keptChanged : CleanupFault::placeTaken);
    item.source = std::move(*opened);
    const auto now = item.source->details();
    if (!now)
        return CleanupFailure{CleanupFault::system, now.error()};
    item.sourceWas = *now;
    const FileStamp& was = contentOf(entry);
    if (!isThatFile(*now, was) || !sameContent(*now, was))
        return because(elsewhere ? CleanupFault::keptChanged : CleanupFault::changed);
    return item.source->isBeingWritten() ? Failure(because(CleanupFault::beingWritten)) : Failure{};
}

Failure placeObstacle(const std::filesystem::path& place, const PassPorts& ports)
{
    const auto folder = ports.held.openFolder(place.parent_path());
    if (!folder)
        return folder.error().kind == ErrorKind::notFound && ports.output != nullptr
                   ? Failure{}
                   : CleanupFailure{CleanupFault::system, folder.error()};
    const auto there = folder.value()->look(place.filename().native());
    if (there)
        return because(CleanupFault::placeTaken);
    return there.error().kind == ErrorKind::notFound ? Failure{} : CleanupFailure{CleanupFault::system, there.error()};
}

}  // namespace

std::optional<CleanupFailure> notThatLink(const HeldFolder& folder, NativeView name, const JournalEntry& entry)
{
    const auto now = folder.look(name);
    if (!now)
        return missing(now.error());
    if (entry.link == LinkKind::symbolic)
        return notThatSymbolicLink(folder, name, now->kind, entry);
    const FileStamp& was = contentOf(entry);
    if (now->kind != FileKind::regular || !isThatFile(*now, was))
        return because(CleanupFault::placeTaken);
    if (!sameContent(*now, was))
        return because(CleanupFault::changed);
    // A copy under one of several names would no longer be the same file as the others.
    if (entry.link == LinkKind::clone && now->links > 1)
        return CleanupFailure{CleanupFault::system, {ErrorKind::notSupported, 0, filledText(TextId::undoCloneNames)}};
    return {};
}

std::variant<SplitItem, CleanupFailure> holdForSplit(const JournalEntry& entry, const PassPorts& ports)
{
    auto folder = ports.held.openFolder(entry.intent.item.parent_path());
    if (!folder)
        return missing(folder.error());
    SplitItem item{std::move(*folder), entry.intent.item.filename().native(), nullptr, {}};
    if (const auto other = notThatLink(*item.folder, item.name, entry))
        return *other;
    if (const auto obstacle = holdSource(item, entry, ports))
        return *obstacle;
    return item;
}

std::optional<CleanupFailure> trashObstacle(const JournalEntry& entry, const PassPorts& ports)
{
    if (entry.trashed.empty())
        return because(CleanupFault::gone);
    const auto folder = ports.held.openFolder(entry.trashed.parent_path());
    if (!folder)
        return missing(folder.error());
    const auto there = folder.value()->look(entry.trashed.filename().native());
    if (!there)
        return missing(there.error());
    const FileStamp& was = entry.intent.itemWas;
    if (!isThatFile(*there, was))
        return because(CleanupFault::gone);
    // A file that was made since may have got the number of one that is gone.
    if (was.kind == FileKind::regular && !sameContent(*there, was))
        return because(CleanupFault::changed);
    return placeObstacle(entry.intent.item, ports);
}

std::optional<CleanupFailure> undoObstacle(const JournalEntry& entry, const PassPorts& ports)
{
    if (entry.intent.action == CleanupAction::deletePermanently)
        return because(CleanupFault::forGood);
    if (entry.intent.action == CleanupAction::recycle)
        return trashObstacle(entry, ports);
    const auto held = holdForSplit(entry, ports);
    const auto* obstacle = std::get_if<CleanupFailure>(&held);
    return obstacle != nullptr ? Failure(*obstacle) : Failure{};
}

}  // namespace kelvane
