// Folders as people type them, and as a saved scan has them.
#pragma once

#include <string>
#include <vector>

#include "cli/saved_scan.h"

namespace kelvane {

// A scan keeps the links in the names of its roots. So one folder has several names: the typed one, the real one, and
// the one that leads through a scanned root that is a link. Scan and platform outlive it.
class FolderNames {
public:
    FolderNames(const SavedScan& scan, Platform& platform) : scan_(scan), platform_(platform) {}

    // Absolute, without a separator at the end; the typed one first. An error with a message for the person when there
    // is no such folder: a mistyped one would protect nothing.
    [[nodiscard]] Result<std::vector<std::string>> forms(const std::string& typed) const;

    // The form that holds files of the scan; the typed one when none does.
    [[nodiscard]] Result<std::string> bestForm(const std::string& typed) const;

private:
    const SavedScan& scan_;
    Platform& platform_;
};

}  // namespace kelvane
