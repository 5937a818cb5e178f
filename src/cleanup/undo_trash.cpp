// Out of the trash, back to where it was.
#include "cleanup/settle_place.h"
#include "cleanup/undo_steps.h"

namespace kelvane {
namespace {

CleanupFailure failureOf(const Error& error)
{
    return {error.kind == ErrorKind::exists ? CleanupFault::placeTaken : CleanupFault::system, error};
}

Status restore(const JournalEntry& entry, const PassPorts& ports)
{
    const std::filesystem::path& place = entry.intent.item;
    const auto folder = ports.held.openFolder(place.parent_path());
    if (!folder && folder.error().kind == ErrorKind::notFound && ports.output != nullptr) {
        if (Status made = ports.output->createFolders(place.parent_path()); !made)
            return made;
    }
    return ports.operations.restore(entry.trashed, place);
}

bool isBack(const JournalEntry& entry, const PassPorts& ports)
{
    const auto folder = ports.held.openFolder(entry.intent.item.parent_path());
    const auto there = folder ? folder.value()->look(entry.intent.item.filename().native()) : folder.error();
    return there && there->identity.known() && isThatFile(*there, entry.intent.itemWas);
}

}  // namespace

StepOutcome bringFromTrash(const JournalEntry& entry, const PassPorts& ports)
{
    if (auto obstacle = trashObstacle(entry, ports))
        return {std::move(obstacle), {}, true};
    const Status restored = restore(entry, ports);
    if (restored)
        return {};
    // An error may also come from what follows the move: only what lies in the trash still has surely not moved.
    const auto now = trashObstacle(entry, ports);
    const bool stillThere = !now || now->fault == CleanupFault::placeTaken;
    if (!stillThere && isBack(entry, ports))
        return {};
    return {failureOf(restored.error()), {}, stillThere};
}

}  // namespace kelvane
