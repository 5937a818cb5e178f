// The plan of a clean-up in words.
#pragma once

#include <iosfwd>
#include <span>

#include "cleanup/cleanup_plan.h"
#include "cleanup/cleanup_questions.h"
#include "cli/options.h"
#include "results/marking_rules.h"

namespace kelvane {

// A plan, for as long as it is printed.
struct PlanReport {
    const ResultsModel& results;
    const MarkingPreview& preview;
    const CleanupPlan& plan;
    std::span<const TrashlessVolume> withoutTrash;  // what lies there is not in the plan
    bool compareInFull = true;
};

// One line a command, and one for each file that is left alone.
void writePlanText(const PlanReport& report, std::ostream& out);
// What would be marked and freed, what links would lose, and what will be compared first.
void writePlanSums(const PlanReport& report, std::ostream& out);
void writePlanJson(const PlanReport& report, std::ostream& out);

// Names the groups that have all their rows marked.
void writeLostGroupsJson(const ResultsModel& results, std::ostream& out);
void writeLostGroups(const ResultsModel& results, std::ostream& out);

}  // namespace kelvane
