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

// Leaves items alone that changed or whose kept file did: takes their commands out of the plan, appends them to what is
// skipped, and counts anew what comes free. Their number, or `cancelled`; the plan is as it was then.
[[nodiscard]] Result<std::size_t> leaveChangedAlone(CleanupPlan& plan, const ResultsModel& model,
                                                    const CleanupFacts& facts, FileSystem& files,
                                                    const CancelFlag& cancel);

}  // namespace kelvane
