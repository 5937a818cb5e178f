// The pass that puts links in the place of items.
#pragma once

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// Carries out the plan's link commands in their order, batch by batch: hold and check, write ahead, act. At every
// instant the path of an item holds the old file or the finished link. What fails leaves the item as it was.
[[nodiscard]] PassOutcome runLinkPass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports,
                                      const PassOptions& options, CleanupMemory& memory, CleanupQuestions& questions,
                                      JournalWriter& journal, PassObserver& observer, const CancelFlag& cancel);

}  // namespace kelvane
