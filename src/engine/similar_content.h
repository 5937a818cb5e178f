// The door for content descriptors (text, sound, pictures), by which near-duplicates are found.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/criteria.h"
#include "props/prop_cache.h"

namespace kelvane {

// What comparing the contents of two files by their descriptors gave.
struct ContentScore {
    bool comparable = true;  // false: a descriptor is missing, or the two are too different to be scored
    std::int32_t score = 0;  // the percentage scale, not clamped
    bool endsWalk = false;   // no later file in sort order can match either
};

// Similar-content search for the categories that have descriptors.
class SimilarContent {
public:
    virtual ~SimilarContent() = default;
    [[nodiscard]] virtual bool supports(Category category) const = 0;
    // Whether a file has what a descriptor needs (enough text, a preview, a long enough duration).
    [[nodiscard]] virtual bool admits(const ScanCriteria& criteria, ItemContext& file) = 0;
    [[nodiscard]] virtual ContentScore compare(const ScanCriteria& criteria, ItemContext& a, ItemContext& b) = 0;
};

}  // namespace kelvane
