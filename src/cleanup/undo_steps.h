// The steps by which one item is taken back; the journal is the caller's.
#pragma once

#include <memory>
#include <optional>
#include <variant>

#include "cleanup/cleanup_pass.h"
#include "cleanup/journal.h"

namespace kelvane {

// A link that can become a file of its own: its place, and the held file that the copy is made of.
struct SplitItem {
    std::unique_ptr<HeldFolder> folder;
    NativeString name;
    std::unique_ptr<HeldFile> source;
    FileDetails sourceWas;
};

// Opens and checks: the place still holds the link that the clean-up put there, and what it leads to is what it was.
[[nodiscard]] std::variant<SplitItem, CleanupFailure> holdForSplit(const JournalEntry& entry, const PassPorts& ports);

// Why what has this name is not the link of the entry, or is not as it was then; nothing when it is.
[[nodiscard]] std::optional<CleanupFailure> notThatLink(const HeldFolder& folder, NativeView name,
                                                        const JournalEntry& entry);

// Why the item cannot come out of the trash; nothing when it could.
[[nodiscard]] std::optional<CleanupFailure> trashObstacle(const JournalEntry& entry, const PassPorts& ports);

struct StepOutcome {
    std::optional<CleanupFailure> failure;  // of kind `cancelled` when the person stopped it
    std::optional<Error> metadataNotKept;
    bool decided = true;  // false: a temporary name is left, or it is not known whether the step happened
};

// Makes a copy under `entry.undoTemporary`, which is free, and puts it in the place of the link.
[[nodiscard]] StepOutcome splitLink(const JournalEntry& entry, const PassPorts& ports, const CancelFlag& cancel);

[[nodiscard]] StepOutcome bringFromTrash(const JournalEntry& entry, const PassPorts& ports);

}  // namespace kelvane
