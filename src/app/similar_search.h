// What a search for similar contents works with besides properties.
#pragma once

#include <memory>
#include <vector>

#include "app/property_access.h"
#include "engine/pair_numbers.h"
#include "engine/similar_content.h"

namespace kelvane {

// Of every category that can be compared by contents. All that is handed over outlives it.
class SimilarSearch {
public:
    SimilarSearch(const PropertyAccess& properties, ProbeNumbers numbers, unsigned threads, Platform& platform);
    SimilarSearch(const SimilarSearch&) = delete;
    SimilarSearch& operator=(const SimilarSearch&) = delete;

    [[nodiscard]] SimilarContent& content() { return *all_; }

private:
    std::vector<std::unique_ptr<SimilarContent>> each_;
    std::unique_ptr<SimilarContent> all_;
};

}  // namespace kelvane
