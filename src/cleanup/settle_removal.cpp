// Items that were to go, and items that were to come back from the trash.
#include "cleanup/settle_place.h"

namespace kelvane {
namespace {

enum class Whereabouts : std::uint8_t { there, notThere, unknown };

struct Seen {
    Whereabouts where = Whereabouts::unknown;
    Error error;  // where it is unknown
};

Seen seenIn(const std::filesystem::path& path, const FileStamp& was, const PassPorts& ports)
{
    if (path.empty())
        return {Whereabouts::notThere, {}};
    const auto folder = ports.held.openFolder(path.parent_path());
    if (!folder)
        return {folder.error().kind == ErrorKind::notFound && folderIsGone(path, was, ports.files)
                    ? Whereabouts::notThere
                    : Whereabouts::unknown,
                folder.error()};
    const auto now = folder.value()->look(path.filename().native());
    if (now)
        return {isThatFile(*now, was) ? Whereabouts::there : Whereabouts::notThere, {}};
    return {now.error().kind == ErrorKind::notFound ? Whereabouts::notThere : Whereabouts::unknown, now.error()};
}

class Removed {
public:
    Removed(const JournalEntry& entry, const PassPorts& ports)
        : entry_(entry),
          ports_(ports),
          item_(seenIn(entry.intent.item, entry.intent.itemWas, ports)),
          trash_(seenIn(entry.trashed, entry.intent.itemWas, ports))
    {
    }

    // It went to the trash or stayed.
    Verdict settle() const
    {
        if (item_.where == Whereabouts::there)
            return inPlace(EntryState::notDone);
        if (trash_.where == Whereabouts::there)
            return {EntryState::done, LinkKind::none, std::nullopt};
        return neither();
    }

    // It came back from the trash or stayed there.
    Verdict settleReturn() const { return item_.where == Whereabouts::there ? inPlace(EntryState::undone) : settle(); }

    Verdict settleForGood() const
    {
        if (item_.where == Whereabouts::unknown)
            return unknown(item_.error);
        const bool there = item_.where == Whereabouts::there;
        return {there ? EntryState::notDone : EntryState::done, LinkKind::none, std::nullopt};
    }

private:
    // The trash may have noted down an item that it does not have.
    Verdict inPlace(EntryState state) const
    {
        const Status forgotten = entry_.trashed.empty() ? Status() : ports_.operations.forget(entry_.trashed);
        return forgotten ? Verdict{state, LinkKind::none, std::nullopt} : unknown(forgotten.error());
    }

    // Gone from both: nothing more can be done about it, but it is told.
    Verdict neither() const
    {
        if (item_.where == Whereabouts::unknown || trash_.where == Whereabouts::unknown)
            return unknown(item_.where == Whereabouts::unknown ? item_.error : trash_.error);
        return {EntryState::done, LinkKind::none,
                Unsettled{entry_.intent.item, entry_.trashed, {CleanupFault::gone, {}}}};
    }

    Verdict unknown(const Error& error) const
    {
        return {std::nullopt, LinkKind::none,
                Unsettled{entry_.intent.item, entry_.trashed, {CleanupFault::system, error}}};
    }

    const JournalEntry& entry_;
    const PassPorts& ports_;
    Seen item_;
    Seen trash_;
};

}  // namespace

Verdict settleRemoval(const JournalEntry& entry, const PassPorts& ports)
{
    const Removed removed(entry, ports);
    return entry.intent.action == CleanupAction::deletePermanently ? removed.settleForGood() : removed.settle();
}

Verdict settleReturn(const JournalEntry& entry, const PassPorts& ports)
{
    return Removed(entry, ports).settleReturn();
}

}  // namespace kelvane
