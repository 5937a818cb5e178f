// A clean-up run of the journal in figures.
#pragma once

#include <cstdint>

#include "cleanup/journal.h"

namespace kelvane {

// Of items.
struct RunFigures {
    RunNumber number{};
    FileTime started;
    CleanupAction action = CleanupAction::recycle;
    std::uint64_t done = 0;  // those that were taken back included
    std::uint64_t undone = 0;
    std::uint64_t undecided = 0;
    bool damaged = false;
    std::uint64_t bytes = 0;    // of what was done
    std::uint64_t canUndo = 0;  // of what was done: neither taken back nor final
};

[[nodiscard]] RunFigures figuresOf(const JournalRun& run);

// The item was dealt with, and that can be taken back as far as the journal knows.
[[nodiscard]] bool canComeBack(const JournalEntry& entry);

}  // namespace kelvane
