// Candidates that may be exact matches of one another, told apart by everything but contents.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "engine/candidate_sort.h"
#include "engine/criteria.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"

namespace kelvane {

// Positions in sorted order, cut into partitions of at least two; files that match nothing are in none. What an exact
// search demands of two files is an equivalence (same class of primary values, same properties, same type), so files of
// different partitions never match. Dates do not count here: with a tolerance they make no equivalence, and Compare
// looks at them. Two partitions may be merged by a collision of hashes; Compare tells their files apart.
struct ExactPartitions {
    struct Part {
        std::uint32_t begin = 0;
        std::uint32_t count = 0;
    };
    std::vector<std::uint32_t> members;  // ascending within a part
    std::vector<Part> parts;             // by their first members

    [[nodiscard]] std::span<const std::uint32_t> of(const Part& part) const
    {
        return std::span(members).subspan(part.begin, part.count);
    }
};

// Reads the listed properties of the candidates that are not alone in their class. Nothing when cancelled.
[[nodiscard]] std::optional<ExactPartitions> partitionExactly(const ScanCriteria& criteria,
                                                              const SortedCandidates& sorted,
                                                              const PropertySource& properties, ShellNamespace& shell,
                                                              const CancelFlag& cancel);

// Whether equal classes are part of what an exact search demands.
[[nodiscard]] bool classesMustAgree(const ScanCriteria& criteria) noexcept;

}  // namespace kelvane
