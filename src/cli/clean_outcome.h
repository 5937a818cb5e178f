// What became of a clean-up, in words.
#pragma once

#include <iosfwd>

#include "cleanup/cleanup_run.h"
#include "cli/exit_code.h"
#include "results/marking_rules.h"

namespace kelvane {

// A run that is over, for as long as it is reported.
struct CleanOutcome {
    const ResultsModel& results;
    const MarkingPreview& preview;
    const CleanupReport& report;
    bool stopped = false;  // by the person
};

// One line for each file that stayed, with all of them also for those that went.
void writeOutcomeText(const CleanOutcome& outcome, bool all, std::ostream& out);
// Counts, what came free, how to take it back, where the log is.
void writeOutcomeSums(const CleanOutcome& outcome, std::ostream& out);
void writeOutcomeJson(const CleanOutcome& outcome, std::ostream& out);

// Whether everything that was marked is done.
[[nodiscard]] ExitCode exitCodeOf(const CleanOutcome& outcome);

}  // namespace kelvane
