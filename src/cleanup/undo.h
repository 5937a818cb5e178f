// Taking a clean-up back, as a whole or item by item.
#pragma once

#include <functional>
#include <vector>

#include "cleanup/cleanup_pass.h"
#include "cleanup/journal.h"

namespace kelvane {

// One entry of the run that was to be taken back.
struct UndoneItem {
    EntryNumber entry{};
    std::filesystem::path item;
    CleanupAction action = CleanupAction::recycle;
    LinkKind link = LinkKind::none;
    std::optional<CleanupFailure> failure;  // nothing: it is back
    std::optional<Error> metadataNotKept;   // it is back, but not its owner or another part of its metadata
};

struct UndoOutcome {
    std::uint64_t restored = 0;
    std::uint64_t failed = 0;
    std::uint64_t bytes = 0;  // of what is back
    bool cancelled = false;
    std::optional<Error> journalError;  // the journal could not be written on, and the work stopped
};

// Why the entry could not be taken back as things stand; nothing when it could. Looks, and changes nothing. What only
// shows in doing it (space, rights) is not foreseen.
[[nodiscard]] std::optional<CleanupFailure> undoObstacle(const JournalEntry& entry, const PassPorts& ports);

// Which entries: all that were done and not undone yet when empty.
using UndoFilter = std::function<bool(const JournalEntry&)>;

// The last entry first. From the trash by moving, a hard link or clone by a copy with its own metadata, a symbolic link
// by a copy of what it leads to; each made beside its place and put there in one step. A place that holds something new
// is left alone, and so is a link whose kept file changed since. Folders that are missing above what comes out of the
// trash are made anew. What cannot be brought to either end stays intended, for settleUnfinished(); without any such
// entry the run is ended. `opened.run` follows. `told` hears of each item but those that a cancel left; it may be
// empty.
[[nodiscard]] UndoOutcome undoRun(Journals::Opened& opened, const PassPorts& ports, const UndoFilter& filter,
                                  const std::function<void(const UndoneItem&)>& told, const CancelFlag& cancel);

}  // namespace kelvane
