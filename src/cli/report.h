// What a scan prints.
#pragma once

#include <functional>
#include <iosfwd>
#include <vector>

#include "base/cancel.h"
#include "cli/options.h"
#include "engine/scan_driver.h"
#include "results/results_model.h"

namespace kelvane {

// A finished scan, for as long as it is printed.
struct ScanOutcome {
    const ScanCriteria& criteria;
    const ScanReport& report;
    const ResultsModel& results;
    const CancelFlag& cancel;  // breaks a listing off between two groups; JSON is always whole
};

// Prints the groups in the format asked for. A stream that fails ends the printing; that is seen by its state.
void writeReport(OutputFormat format, const ScanOutcome& outcome, std::ostream& out);

void writeTextReport(const ScanOutcome& outcome, std::ostream& out);
void writeJsonReport(const ScanOutcome& outcome, std::ostream& out);
void writeCsvReport(const ScanOutcome& outcome, std::ostream& out);
void writeNullReport(const ScanOutcome& outcome, std::ostream& out);

// "12 duplicates in 5 groups, 1.5 MB could be freed; 80 files (20.0 MB) in 0.3 seconds", ended by a line feed.
void writeSummary(const ScanOutcome& outcome, std::ostream& err);

// What a listing says of one group.
struct GroupFacts {
    std::uint32_t number = 0;
    bool approximate = false;
    std::vector<const ShellItem*> files;
};

// The groups in the order of the list, for as long as `visit` answers with true.
void forEachGroup(const ResultsModel& results, const std::function<bool(const GroupFacts&)>& visit);

// Whether a listing should go on with its next group.
[[nodiscard]] bool goesOn(const ScanOutcome& outcome, const std::ostream& out);

}  // namespace kelvane
