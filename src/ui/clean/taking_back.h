// Taking clean-ups back.
#pragma once

#include <filesystem>
#include <set>

#include "cleanup/journal.h"

namespace kelvane {

class Workbench;

// On the thread of the window; each returns when all is done and told.

// The latest run of which anything can be taken back, after a question.
void takeBackLast(Workbench& bench);
// A run as a whole, after a question; only these items where any are named.
void takeBack(Workbench& bench, RunNumber run, const std::set<std::filesystem::path>& items);

}  // namespace kelvane
