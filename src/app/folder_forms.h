// The names that one folder has, and which of them a list of results knows.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "platform/path_rules.h"
#include "results/results_model.h"

namespace kelvane {

// Normal, but for links; that of a root stays.
[[nodiscard]] std::filesystem::path withoutEndSeparator(const std::filesystem::path& path);

// A scan keeps the links in the names of its roots. So one folder has several names: the one given, the real one, and
// the one that leads through a scanned root that is a link. Absolute, without a separator at the end, as path rules
// hold them; the given one first. Looks at the disk; what cannot be resolved keeps its name.
[[nodiscard]] std::vector<std::string> folderForms(const std::filesystem::path& folder,
                                                   std::span<const std::string> roots);

// The first one that holds items of the list, hidden ones included; the first of all when none does.
[[nodiscard]] const std::string& formInList(const std::vector<std::string>& forms, const ResultsModel& results,
                                            const PathRules& rules);

}  // namespace kelvane
