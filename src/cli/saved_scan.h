// A saved scan, opened for a verb that works on it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/property_access.h"
#include "cli/console.h"
#include "engine/criteria.h"
#include "engine/results_file.h"
#include "results/results_model.h"

namespace kelvane {

// The platform outlives it.
struct SavedScan {
    SavedScan(std::string typed, Platform& platform, const EngineOptions& options);

    std::string name;  // the file as it was typed
    PropertyAccess properties;
    ResultsModel results;                   // groups kept together, in the order of the file; by number when it was
                                            // sorted across groups
    std::vector<PropRef> columns;           // those of the results list
    std::optional<CScanNode> definition;    // nothing where the file does not say what was searched for
    std::optional<ScanCriteria> criteria;   // nothing likewise, and where the definition makes no sense any more
    ScanFigures figures;                    // all 0 where the file has none
    std::uint32_t missing = 0;              // files that are not there any more
    std::vector<std::string> missingFiles;  // their paths
};

// Null when the verb is over with `code`; the reason was told then. `settings` may name an INI file.
[[nodiscard]] std::unique_ptr<SavedScan> openSavedScan(const std::string& typed, const std::string& settings,
                                                       Platform& platform, const Console& console, ExitCode& code,
                                                       AllMissing allMissing = AllMissing::fails);
// The same by options that were made of the settings already.
[[nodiscard]] std::unique_ptr<SavedScan> openSavedScan(const std::string& typed, const EngineOptions& options,
                                                       Platform& platform, const Console& console, ExitCode& code,
                                                       AllMissing allMissing = AllMissing::fails);

// Tells of the files that are not there any more; the exit code says so too.
[[nodiscard]] ExitCode tellMissing(const SavedScan& scan, const Console& console);

}  // namespace kelvane
