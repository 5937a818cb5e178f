// One scan from start to finish.
#pragma once

#include <string>
#include <vector>

#include "engine/criteria.h"
#include "engine/grouping.h"
#include "engine/root_list.h"
#include "engine/walker.h"
#include "platform/priority.h"

namespace kelvane {

struct ScanPorts {
    ShellNamespace& shell;
    const PathRules& paths;
    const PropertySource& properties;
    const Clock& clock;
    Priority& priority;
    ScanObserver& observer;
    const CancelFlag& cancel;
    GroupSink& sink;
    SimilarContent* similar = nullptr;
    const IgnoredPairs* ignored = nullptr;
};

struct ScanReport {
    std::int64_t rows = 0;  // files placed in groups, -1 when cancelled
    RootList roots;
    std::vector<PropRef> columns;  // of the results list
    std::uint64_t candidates = 0;
    std::uint64_t candidateBytes = 0;
    WalkStats walk;
    GroupingStats grouping;
    double walkSeconds = 0;
    double seconds = 0;
};

// What was searched by, and the extra column of the category: the report's columns, known before the scan. Pictures
// need no column of widths beside that of dimensions.
[[nodiscard]] std::vector<PropRef> scanColumns(const ScanCriteria& criteria, const PropertyCatalogue& catalogue);

// Runs phases 1 to 3 on the calling thread (or, at low priority, as Priority::runLowered says) and reports the outcome
// to the observer. Criteria that need a descriptor which nothing supplies are refused by checkDescriptors() first:
// that is the caller's to do.
[[nodiscard]] ScanReport runScan(const ScanCriteria& criteria, const ScanPorts& ports);

// "%d duplicates found in %d:%02d minutes".
[[nodiscard]] std::u16string timingText(std::uint64_t rows, std::uint64_t elapsedMs);

}  // namespace kelvane
