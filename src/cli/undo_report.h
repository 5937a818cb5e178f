// What was taken back, and which runs there are, for people and for programs.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include "cleanup/run_figures.h"
#include "cleanup/undo.h"

namespace kelvane {

struct UndoReport {
    RunNumber run{};      // 0: there was none to take back
    bool dryRun = false;  // `outcome` and `items` then say what would be
    UndoOutcome outcome;
    std::vector<UndoneItem> items;
};

// One line an item.
void writeUndoText(const UndoReport& report, std::ostream& out);
void writeUndoSums(const UndoReport& report, std::ostream& out);
void writeUndoJson(const UndoReport& report, std::ostream& out);

void writeRunsText(const std::vector<RunFigures>& runs, std::ostream& out);
void writeRunsJson(const std::vector<RunFigures>& runs, std::ostream& out);

}  // namespace kelvane
