// What was taken back, and which runs there are, for people and for programs.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

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

// One run in figures, of items.
struct RunFigures {
    RunNumber number{};
    FileTime started;
    CleanupAction action = CleanupAction::recycle;
    std::uint64_t done = 0;  // those that were taken back included
    std::uint64_t undone = 0;
    std::uint64_t undecided = 0;
    bool damaged = false;
};

[[nodiscard]] RunFigures figuresOf(const JournalRun& run);

void writeRunsText(const std::vector<RunFigures>& runs, std::ostream& out);
void writeRunsJson(const std::vector<RunFigures>& runs, std::ostream& out);

}  // namespace kelvane
