// Marked items that a clean-up left on the list, and why.
#pragma once

#include <QStringList>
#include <vector>

#include "base/desktop_texts/clean.h"
#include "cleanup/cleanup_run.h"

namespace kelvane {

class Workbench;

struct LeftItems {
    std::vector<ItemId> items;
    std::vector<QStringList> rows;  // file and reason of each
};

[[nodiscard]] LeftItems leftItems(const CleanupReport& report, const ResultsModel& results);
[[nodiscard]] LeftItems leftItems(const DirectDeletion& deletion, const ResultsModel& results);

// On the thread of the window: selects them in the list, and lists them with their reasons. Nothing when there are
// none. The text has "5 items" as its %1.
void tellLeft(Workbench& bench, LeftItems left, TextId words = desktop_text::staysText);

}  // namespace kelvane
