// What the file of a clean-up's journal says.
#pragma once

#include <cstdint>

#include "cleanup/journal_records.h"

namespace kelvane {

struct JournalReading {
    JournalRun run;           // its number only where the header is sound
    RecordChain chain;        // up to the last sound record
    std::uint64_t sound = 0;  // bytes up to there; 0 when even the header is not
    bool cut = false;         // bytes that are not sound follow
};

// Never fails for what the bytes say but with notSupported for a later format: what comes before damage counts.
[[nodiscard]] Result<JournalReading> readJournal(ContentReader& reader);

// Which states follow on which.
[[nodiscard]] bool mayBecome(EntryState from, EntryState to);
// Of these, those that say what came of an intent.
[[nodiscard]] bool mayFinish(EntryState from, EntryState to);

}  // namespace kelvane
