// What a list of results is worked on with: the definition it was made by, and what reads values of its files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/descriptor_cache.h"
#include "app/property_access.h"
#include "app/similar_search.h"
#include "engine/criteria.h"
#include "engine/scan_figures.h"

namespace kelvane {

// As long as the list that was made with it: items keep what was read for them. On the thread of its window.
struct ListSession {
    // Values go missing once the flag, which outlives this, is set.
    ListSession(Platform& platform, Settings settings, EngineOptions options, const CancelFlag& cancel);
    ListSession(const ListSession&) = delete;
    ListSession& operator=(const ListSession&) = delete;

    const Settings settings;  // as they were when the list was begun
    const EngineOptions options;
    DescriptorCache cache;
    PropertyAccess access;
    SimilarSearch similar;
    std::optional<CScanNode> definition{};   // nothing where a file does not say what was searched for
    std::optional<ScanCriteria> criteria{};  // nothing likewise
    std::optional<ScanFigures> figures{};    // nothing likewise, and until the scan has ended
    std::vector<PropRef> columns{};          // that the scan gave the list
    std::vector<PropRef> inView{};           // from the left, once they were looked at: see columnsInView()
    bool chosen = false;                     // a person chose those in view
    std::string file{};                      // where it was loaded from or saved to; empty otherwise
};

}  // namespace kelvane
