// What a search for similar contents works with besides properties.
#pragma once

#include <memory>

#include "app/settings.h"
#include "cli/console.h"
#include "cli/options.h"
#include "cli/property_access.h"
#include "engine/similar_documents.h"

namespace kelvane {

// The descriptors of documents, kept from run to run where the settings say so, nobody asked otherwise, and the request
// is one that needs them. What cannot be used is named. All that is handed over outlives it.
class SimilarSearch {
public:
    SimilarSearch(const ScanRequest& request, const Settings& settings, const PropertyAccess& properties,
                  ProbeNumbers numbers, Platform& platform, const Console& console);
    ~SimilarSearch();
    SimilarSearch(const SimilarSearch&) = delete;
    SimilarSearch& operator=(const SimilarSearch&) = delete;

    [[nodiscard]] SimilarContent& content() { return *content_; }

private:
    std::unique_ptr<RunCache> cache_;
    std::unique_ptr<SimilarContent> content_;  // uses the cache
};

// Names the programs and libraries that were missing.
void complainOfMissingTools(const TextExtraction& extraction, const Console& console);

}  // namespace kelvane
