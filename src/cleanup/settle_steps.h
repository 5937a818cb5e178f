// How one entry that a crash left undecided is decided by what lies on the disk.
#pragma once

#include <optional>

#include "cleanup/journal.h"
#include "cleanup/settle.h"

namespace kelvane {

struct Verdict {
    std::optional<EntryState> state;  // nothing: as undecided as before
    LinkKind link = LinkKind::none;
    std::optional<Unsettled> told;
};

// Of entries that are `intended`: a link in the place of an item; an item that was to go.
[[nodiscard]] Verdict settleReplacement(const JournalEntry& entry, const PassPorts& ports);
[[nodiscard]] Verdict settleRemoval(const JournalEntry& entry, const PassPorts& ports);
// Of entries whose taking back is intended: a copy in the place of a link; an item from the trash.
[[nodiscard]] Verdict settleSplit(const JournalEntry& entry, const PassPorts& ports);
[[nodiscard]] Verdict settleReturn(const JournalEntry& entry, const PassPorts& ports);

// Whether the disk shows that an entry which is `done` is not, or not wholly: the journal may have reached its device
// before the names reached theirs, when the power was lost. Such an entry is settled as if it was intended.
[[nodiscard]] bool isBehind(const JournalEntry& entry, const PassPorts& ports);

}  // namespace kelvane
