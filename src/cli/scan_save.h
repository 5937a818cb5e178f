// "--save" of a scan.
#pragma once

#include <string>

#include "cli/console.h"
#include "engine/scan_driver.h"
#include "results/results_model.h"

namespace kelvane {

struct SaveTarget {
    std::string file;  // as it was typed; empty: nothing is saved
    bool overwrite = false;
};

// What stands in the way, asked before a scan that may take hours. A saved scan may be replaced, any other file only
// where the person said so.
[[nodiscard]] Status checkTarget(const SaveTarget& target, Platform& platform);

// Writes the file, or nothing for a scan that found nothing, and tells which. The roots are saved as they were walked,
// so that the scan can be repeated from anywhere.
[[nodiscard]] ExitCode saveScan(const SaveTarget& target, const ScanCriteria& criteria, const ScanReport& report,
                                const ResultsModel& results, Platform& platform, const Console& console);

}  // namespace kelvane
