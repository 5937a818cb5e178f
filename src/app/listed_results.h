// Between the list of results and the files in which it is kept.
#pragma once

#include <vector>

#include "engine/engine_options.h"
#include "engine/results_file.h"
#include "results/results_model.h"

namespace kelvane {

// All items, hidden ones too, in the order of view.
[[nodiscard]] std::vector<StoredRow> storedRows(const ResultsModel& results);
void addRows(ResultsModel& results, std::vector<StoredRow> rows);

// As a scan had it: archives were entered or not, whatever the settings are now.
[[nodiscard]] EngineOptions optionsWithArchives(EngineOptions options, bool entered);

}  // namespace kelvane
