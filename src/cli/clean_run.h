// A clean-up that is carried out.
#pragma once

#include "app/registry_access.h"
#include "cli/clean_options.h"
#include "cli/console.h"
#include "results/marking_rules.h"

namespace kelvane {

// A scan with marks on its list, none of its groups marked whole.
struct MarkedScan {
    SavedScan& scan;
    const EngineOptions& options;  // by the settings in force
    const MarkingPreview& preview;
};

// Asks where that is needed, does the work, prints what became of it, and keeps the books in the settings. Deletes
// nothing for good unless a person says yes, be it ahead.
[[nodiscard]] ExitCode carryOut(const MarkedScan& marked, const CleanRequest& request, CRegistryAccess& settings,
                                Platform& platform, const Console& console);

}  // namespace kelvane
