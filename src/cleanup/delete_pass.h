// The pass that takes items away, to the trash or for good.
#pragma once

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// Carries out the plan's removals in their order, batch by batch: hold and check, write ahead, hand to the system.
[[nodiscard]] PassOutcome runDeletePass(const CleanupPlan& plan, const ResultsModel& model, const PassPorts& ports,
                                        const PassOptions& options, CleanupQuestions& questions, JournalWriter& journal,
                                        PassObserver& observer, const CancelFlag& cancel);

// What the system's answer for one item means.
[[nodiscard]] CleanupFailure failureOf(const RemovalOutcome& outcome, Removal removal);
[[nodiscard]] bool isIgnoredRemoval(std::int32_t code);
[[nodiscard]] bool isFailedRemoval(std::int32_t code);

}  // namespace kelvane
