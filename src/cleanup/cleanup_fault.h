// Why an item of a clean-up, or of taking one back, stayed as it was.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/result.h"
#include "base/text_table.h"

namespace kelvane {

enum class CleanupFault : std::uint8_t {
    system,         // the system refused; the error says why
    changed,        // no longer the file that the scan saw
    keptChanged,    // the kept one is not
    sameFile,       // both are names of one file, or one lies within the other
    keptInTrash,    // the kept one lies in a trash
    keptMarked,     // the kept one goes away by this same clean-up
    different,      // compared in full, the two differ
    isLink,         // the item is a link itself, which no other link can stand for
    beingWritten,   // another program writes to it
    volumeRefuses,  // links failed on this volume before
    noTrash,        // its volume has no trash
    placeTaken,     // something new has the name (taking back)
    gone,           // what would be brought back is not there any more (taking back)
    forGood,        // was deleted for good (taking back)
    journal,        // the journal cannot be written: nothing is done without it
};

struct CleanupFailure {
    CleanupFault fault = CleanupFault::system;
    Error error;  // for `system` and `journal`; with what is known otherwise
};

// Where nothing more is known than the reason.
[[nodiscard]] inline CleanupFailure because(CleanupFault fault)
{
    return {fault, {}};
}

// Fixed names for programs: "system", "changed", "keptChanged" ...
[[nodiscard]] std::string_view nameOf(CleanupFault fault);
// For people, in UTF-8: the reason, with the system's own text where there is one.
[[nodiscard]] std::string textOf(const CleanupFailure& failure);

}  // namespace kelvane
