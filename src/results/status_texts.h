// What the status bar below the results says about them.
#pragma once

#include <optional>
#include <string>

#include "base/size_text.h"
#include "results/results_model.h"

namespace kelvane {

// "Marked 3 (1.5 MB)": the ticked items in view; "Empty pane" when no item is in view. Nothing is written without
// ticks or tick boxes.
[[nodiscard]] std::optional<std::u16string> markedText(const ResultsModel& model, const SizeWords& size = sizeText);

// "Selected 2 (10.0 KB)" from two selected items on, else "17 items"; nothing when no item is in view.
[[nodiscard]] std::optional<std::u16string> itemsText(const ResultsModel& model, const SizeWords& size = sizeText);

}  // namespace kelvane
