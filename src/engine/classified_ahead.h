// Exact searches in linear time: which files match is found ahead of the group walk, contents included, by workers.
#pragma once

#include <memory>

#include "engine/content_classes.h"
#include "engine/grouping.h"
#include "engine/neighbours.h"

namespace kelvane {

// Of all workers together.
struct AheadBudget {
    ContentBudget worker;
    std::size_t openFiles = 256;  // far below what a process may open by default
    std::size_t keptBytes = 32 * 1'048'576;
};

// Partitions the candidates of an exact search and, when it asks for contents, starts reading them. The workers end
// with the object. Files that cannot be read, or that changed since they were listed, are counted in the statistics and
// told to the observer, one call at a time. Null when cancelled. Criteria, candidates and ports outlive the result.
[[nodiscard]] std::unique_ptr<Neighbours> classifyAhead(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                                        const GroupingPorts& ports, const AheadBudget& budget,
                                                        GroupingStats& stats);

// The number of worker threads: as asked for, or by the number of processors.
[[nodiscard]] unsigned workerCount(unsigned asked) noexcept;

}  // namespace kelvane
