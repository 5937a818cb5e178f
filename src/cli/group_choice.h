// Which groups of a saved scan are printed.
#pragma once

#include <string>
#include <vector>

#include "cli/saved_scan.h"

namespace kelvane {

// Hides every group but those of these files, named as people type paths: relative to the current folder, through
// links, by another name of the file. Complains of a file that is in none; false then.
[[nodiscard]] bool showGroupsOf(const std::vector<std::string>& typed, SavedScan& scan, Platform& platform,
                                const Console& console);

// Which files are in no group of the earlier scan, by item id. Paths decide.
[[nodiscard]] std::vector<bool> newSince(const SavedScan& earlier, const SavedScan& scan, const PathRules& paths);

// Hides every group without a new file.
void showGroupsWithNew(const std::vector<bool>& isNew, SavedScan& scan);

}  // namespace kelvane
