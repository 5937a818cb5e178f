// Earlier clean-ups and their items, as a page shows them.
#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <vector>

#include "cleanup/journal.h"

namespace kelvane {

class Workbench;

struct RunLine {
    RunNumber number{};
    bool canUndo = false;
    QStringList cells;  // number, date, what was done, items, size, state
};

struct RunItemLine {
    std::filesystem::path path;
    bool canUndo = false;
    QStringList cells;  // file, state
};

[[nodiscard]] QStringList runTitles();
[[nodiscard]] QStringList runItemTitles();

// On the thread of the window. The latest run first.
[[nodiscard]] Result<std::vector<RunLine>> earlierRuns(Workbench& bench);
[[nodiscard]] std::vector<RunItemLine> itemsOfRun(Workbench& bench, RunNumber run);

}  // namespace kelvane
