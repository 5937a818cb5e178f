// What a scan counted: kept with its results, so that they can be reported again later.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/result.h"
#include "engine/engine_options.h"
#include "engine/node_blob.h"
#include "engine/scan_driver.h"

namespace kelvane {

struct ScanFigures {
    std::uint64_t candidates = 0;
    std::uint64_t candidateBytes = 0;
    std::uint64_t folders = 0;
    std::uint64_t filesSeen = 0;
    std::uint64_t bytesRead = 0;
    std::uint64_t skipped = 0;  // while walking and while comparing
    std::uint64_t offlineSkipped = 0;
    std::uint64_t withoutValue = 0;
    double seconds = 0;
    double walkSeconds = 0;
    double sortSeconds = 0;
    double compareSeconds = 0;
    bool archives = false;           // they were entered as folders
    std::vector<std::string> roots;  // those that were walked, in that order
    std::uint64_t comparisons = 0;   // pairs of files that were held against each other
    friend bool operator==(const ScanFigures&, const ScanFigures&) = default;
};

[[nodiscard]] ScanFigures figuresOf(const ScanReport& report, const EngineOptions& options);

// A node with the name "scanFigures".
[[nodiscard]] StoredNode storedNode(const ScanFigures& figures);

// `wrongType` for a node of another kind or name, `invalid` for a field that is damaged. A field that is not there is
// 0, an unknown one is passed over.
[[nodiscard]] Result<ScanFigures> scanFiguresOf(const StoredNode& node);

}  // namespace kelvane
