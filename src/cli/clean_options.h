// What a clean-up is asked to do: which copies to keep, and what becomes of the others.
#pragma once

#include <filesystem>
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
    std::string link, log, sort, format, settings, progress = "auto";
    bool toTrash = false, permanently = false, noCompare = false, yes = false, dryRun = false;
    bool json = false, verbose = false;
};

struct CleanRequest {
    MarkingPlan marks;
    CleanupRequest action;
    std::vector<SortKey> sort;
    OutputFormat format = OutputFormat::text;
    ProgressMode progress = ProgressMode::automatic;
    std::filesystem::path log;  // empty: where the settings say so, if they do
    bool compareInFull = true;
    bool dryRun = false;
    bool yes = false;
    bool verbose = false;
};

// Declares the options; `raw` must outlive the parsing.
void addCleanOptions(CLI::App& app, RawClean& raw);

// Checked. Folders are taken as people type them, and get the form in which the scan has its paths. `app` has parsed
// `raw`, and knows the order in which rules were given. `invalid` with a message for the person.
[[nodiscard]] Result<CleanRequest> makeCleanRequest(const CLI::App& app, const RawClean& raw, const SavedScan& scan,
                                                    Platform& platform);

}  // namespace kelvane
