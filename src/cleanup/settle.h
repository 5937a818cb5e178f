// What a crash left half done, brought to one end or the other.
#pragma once

#include <vector>

#include "cleanup/cleanup_pass.h"
#include "cleanup/journal.h"

namespace kelvane {

struct Unsettled {
    std::filesystem::path item;  // empty when the journal itself is meant
    std::filesystem::path left;  // a file that lies beside it or in the trash; may be empty
    CleanupFailure failure;
};

struct SettledRun {
    RunNumber number{};
    std::uint32_t completed = 0;  // items
    std::uint32_t takenBack = 0;  // items that are as they were before, those that nothing had happened to included
    // In neither number. What may hold the only copy of a content is left as it is, for a person to look at, and looked
    // at again the next time; where nothing is left that could be done (`gone`) this is told once.
    std::vector<Unsettled> unsettled;
    bool damaged = false;  // the journal was cut off: what came last may be missing from it
};

// Looks at every run that did not come to its end and that no process is working on: decides each undecided entry by
// what lies on the disk, removes temporary names, and ends the run. Nothing that holds the only copy of a content is
// removed. Runs without anything undecided are ended silently and not reported. An error only when the journals cannot
// be read at all.
[[nodiscard]] Result<std::vector<SettledRun>> settleUnfinished(Journals& journals, const PassPorts& ports);

}  // namespace kelvane
