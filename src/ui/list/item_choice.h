// Which items a command is about, as the window's thread knows them: what the main thread sees is a moment older, and a
// key that is pressed right after another one means what the first one did.
#pragma once

#include <optional>
#include <vector>

#include "results/results_model.h"

namespace kelvane {

// In view, from the top.
[[nodiscard]] std::vector<ItemId> selectedRows(const ResultsModel& results);
// Those, or the current item when nothing is selected.
[[nodiscard]] std::vector<ItemId> itemsInQuestion(const ResultsModel& results, std::optional<ItemId> current);
// By group, in the order of their numbers: the selected rows of groups with two of them at least.
[[nodiscard]] std::vector<std::vector<ItemId>> selectedGroups(const ResultsModel& results);

// As the space bar does: the item gets the opposite of what it has, and all that is selected with it gets the same.
void toggleTicks(ResultsModel& results, ItemId current);

}  // namespace kelvane
