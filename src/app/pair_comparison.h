// Two files held against each other as a scan would do it, for people who ask why.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "engine/matcher.h"
#include "platform/platform.h"

namespace kelvane {

struct PairComparison {
    MatchResult result;
    std::vector<StageReport> stages;      // up to the one that parted the files
    bool sameFile = false;                // two names of one file: a scan would list it once
    std::vector<std::string> complaints;  // in UTF-8: files of which nothing can be compared, and why
};

// Texts of the stages' values point into what the pair has cached.
[[nodiscard]] PairComparison comparePair(std::array<Candidate, 2>& pair, const ScanCriteria& criteria,
                                         const PropertySource& source, SimilarContent& similar, Platform& platform,
                                         const CancelFlag& cancel);

}  // namespace kelvane
