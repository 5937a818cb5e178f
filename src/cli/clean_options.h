// What a clean-up is asked to do: which copies to keep, and what becomes of the others.
#pragma once

#include <string>
#include <vector>

#include "base/result.h"
#include "cleanup/cleanup_plan.h"
#include "cli/options.h"
#include "cli/saved_scan.h"
#include "results/marking_rules.h"
#include "results/result_sort.h"

namespace CLI {
class App;
}

namespace kelvane {

// The words as they were typed.
struct RawClean {
    std::vector<std::string> files, keep, keepUnder, prefer, protect;
    std::string link, sort, format, settings;
    bool toTrash = false, permanently = false, dryRun = false, json = false;
};

struct CleanRequest {
    MarkingPlan marks;
    CleanupRequest action;
    std::vector<SortKey> sort;
    OutputFormat format = OutputFormat::text;
};

// Declares the options; `raw` must outlive the parsing.
void addCleanOptions(CLI::App& app, RawClean& raw);

// Checked. Folders are taken as people type them, and get the form in which the scan has its paths. `app` has parsed
// `raw`, and knows the order in which rules were given. `invalid` with a message for the person.
[[nodiscard]] Result<CleanRequest> makeCleanRequest(const CLI::App& app, const RawClean& raw, const SavedScan& scan,
                                                    Platform& platform);

}  // namespace kelvane
