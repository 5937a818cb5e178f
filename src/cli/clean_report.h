// The plan of a clean-up in words.
#pragma once

#include <iosfwd>

#include "cleanup/cleanup_plan.h"
#include "cli/options.h"
#include "results/marking_rules.h"

namespace kelvane {

// What a dry run prints, for as long as it is printed.
struct DryRun {
    const ResultsModel& results;
    const MarkingPreview& preview;
    const CleanupPlan& plan;
};

// One line a command, and one for each file that is left alone.
void writePlanText(const DryRun& run, std::ostream& out);
// What would be marked and freed, and that nothing was done.
void writePlanSums(const DryRun& run, std::ostream& out);
void writePlanJson(const DryRun& run, std::ostream& out);

// Names the groups that have all their rows marked.
void writeLostGroupsJson(const ResultsModel& results, std::ostream& out);
void writeLostGroups(const ResultsModel& results, std::ostream& out);

}  // namespace kelvane
