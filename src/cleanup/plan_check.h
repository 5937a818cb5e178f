// Whether the disk still is as a plan takes it to be.
#pragma once

#include "base/cancel.h"
#include "cleanup/cleanup_plan.h"
#include "platform/file_system.h"

namespace kelvane {

// Whether the file is on the disk as the list has it: its kind, and of files size, modification time and, where both
// are known, identity. A folder's time changes with what lies directly in it, and only that is noticed. Items in
// archives go by the archive, and are taken for unchanged.
[[nodiscard]] bool isAsListed(const ShellItem& item, FileSystem& files);

// Takes the commands for these items, which are told in the order of the list, out of the plan: they are skipped, and
// what comes free is counted anew.
void leaveAlone(CleanupPlan& plan, std::span<const CleanupSkip> items, const ResultsModel& model,
                const CleanupFacts& facts);

// Leaves items alone that changed or whose kept file did. Their number, or `cancelled`; the plan is as it was then.
[[nodiscard]] Result<std::size_t> leaveChangedAlone(CleanupPlan& plan, const ResultsModel& model,
                                                    const CleanupFacts& facts, FileSystem& files,
                                                    const CancelFlag& cancel);

}  // namespace kelvane
