// What commands free, told honestly: a file that keeps a name keeps its bytes.
#pragma once

#include "cleanup/cleanup_plan.h"

namespace kelvane {

// Fills in `frees` of each command and gives the sum. The names of one file count once, with the last command that
// takes one away, and only when no row of the list, hidden ones included, keeps another name of it and, as far as
// `linkCount` knows, none is left elsewhere. Links free nothing, and neither do bytes that other files share.
[[nodiscard]] std::uint64_t countFreedBytes(const ResultsModel& model, const CleanupFacts& facts,
                                            std::span<CleanupCommand> commands);

}  // namespace kelvane
