// Items whose guards hold and whose intents are written ahead together.
#pragma once

#include <optional>
#include <vector>

#include "cleanup/guards.h"

namespace kelvane {

struct BatchItem {
    std::size_t command = 0;  // in the plan
    ItemId kept{};
    std::optional<CleanupFailure> failure;  // why it cannot be acted on; else `pair` is held
    HeldPair pair;
    NativeString temporary;  // of links
    FileMetadata metadata;   // likewise
    std::optional<EntryNumber> entry;
    std::optional<RemovalOutcome> removal;  // of removals that had their turn
};

using PassBatch = std::vector<BatchItem>;

// Writes the intents of those that can be acted on, and returns when the device has them. Does nothing without any.
[[nodiscard]] Status writeAhead(PassBatch& batch, const CleanupPlan& plan, JournalWriter& journal);

}  // namespace kelvane
