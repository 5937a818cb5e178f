// Deletions on volumes that have no trash.
#pragma once

#include <span>
#include <vector>

#include "cleanup/cleanup_plan.h"
#include "cleanup/cleanup_questions.h"
#include "platform/file_operations.h"
#include "platform/file_system.h"

namespace kelvane {

// Where the plan's items cannot go to a trash, each volume asked once, in the order of the list.
[[nodiscard]] std::vector<TrashlessVolume> volumesWithoutTrash(const CleanupPlan& plan, const ResultsModel& model,
                                                               FileOperations& operations, FileSystem& files);

// The plan without these items: skipped(noTrash).
void leaveTrashlessAlone(CleanupPlan& plan, std::span<const TrashlessVolume> volumes, const ResultsModel& model,
                         const CleanupFacts& facts);

// The plan with these items deleted for good, as only a person who was told may want it.
void deleteTrashlessForGood(CleanupPlan& plan, std::span<const TrashlessVolume> volumes);

}  // namespace kelvane
