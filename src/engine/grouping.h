// Phases 2 and 3: from candidates to numbered groups.
#pragma once

#include <cstdint>

#include "base/cancel.h"
#include "engine/candidate.h"
#include "engine/criteria.h"
#include "engine/group_sink.h"
#include "engine/ignored_pairs.h"
#include "engine/scan_observer.h"
#include "engine/similar_content.h"
#include "platform/clock.h"
#include "platform/path_rules.h"
#include "platform/shell_namespace.h"
#include "props/property_source.h"

namespace kelvane {

struct GroupingPorts {
    ShellNamespace& shell;
    const PathRules& paths;
    const PropertySource& properties;
    const Clock& clock;
    ScanObserver& observer;
    const CancelFlag& cancel;
    GroupSink& sink;
    SimilarContent* similar = nullptr;
    const IgnoredPairs* ignored = nullptr;  // what to leave apart
};

struct AheadBudget;

// How a grouping differs from that of a fresh scan.
struct GroupingMode {
    bool recheck = false;                    // the candidates are earlier results
    const ShellItem* onlyGroupOf = nullptr;  // keep only the group that holds this file
    const AheadBudget* budget = nullptr;     // of reading ahead; the usual one when null
};

struct GroupingStats {
    std::uint64_t groups = 0;
    std::uint64_t grouped = 0;     // files handed over
    std::uint64_t duplicates = 0;  // grouped - groups
    std::uint64_t bytesRead = 0;
    std::uint64_t skipped = 0;       // unreadable, or changed while read
    std::uint64_t ignoredPairs = 0;  // matched, but declared as not duplicates
    std::uint64_t comparisons = 0;   // pairs of files that were held against each other
    double sortSeconds = 0;
    double compareSeconds = 0;
};

// Sorts, groups and hands over. Returns the number of files placed in groups, or -1 when cancelled; groups handed over
// before that stay with the sink. Decisions are made on the calling thread in sorted order; contents are read ahead by
// worker threads. Hard links of a grouped file are excluded, never grouped. A group with files that were declared not
// to be duplicates is handed over as several, see IgnoredSplitter; whoever is alone then is left out.
[[nodiscard]] std::int64_t groupCandidates(const ScanCriteria& criteria, CandidateList& candidates,
                                           const GroupingPorts& ports, const GroupingMode& mode, GroupingStats& stats);

}  // namespace kelvane
