// Phase 2: candidates in the order of their primary values.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/grouping.h"
#include "props/property_source.h"

namespace kelvane {

// The candidates that take part, sorted. 8 bytes a candidate; the list itself stays as it is, and has to.
struct SortedCandidates {
    CandidateList* list = nullptr;
    std::vector<std::uint32_t> order;    // indexes into the list
    std::vector<std::uint32_t> classes;  // by position: ascending numbers, the same for equal primary values

    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(order.size()); }
    [[nodiscard]] Candidate& at(std::uint32_t position) const { return (*list)[order[position]]; }
};

// Resets the group fields. Excluded files stay excluded, unless earlier results are checked again for one given file;
// when they are checked again, files without a primary value leave the list, and offline ones are excluded where the
// criteria skip them.
void prepareCandidates(const ScanCriteria& criteria, CandidateList& candidates, const PropertySource& properties,
                       const GroupingMode& mode);

// Sorts by the order that the contents' descriptors ask for, else by the primary values, which are read where that was
// not done; files found earlier come first among equal ones. Files ordered by descriptors are all of different classes:
// an equal key says nothing of a value. Excluded files are left out, which is the same to the walk as their coming
// first. Nothing when cancelled.
[[nodiscard]] std::optional<SortedCandidates> sortCandidates(const ScanCriteria& criteria, CandidateList& candidates,
                                                             const GroupingPorts& ports);

}  // namespace kelvane
