// Sorting the results by any properties.
#pragma once

#include <optional>
#include <vector>

#include "base/cancel.h"
#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

struct SortKey {
    PropRef property;
    bool ascending = true;
    friend bool operator==(const SortKey&, const SortKey&) = default;
};

enum class GroupedOrder : bool { no, yes };

// The order in which the list would stand: stable, missing values after all others whichever way a key runs, texts as
// appendSortKey() says. With groups kept together, the members of each are sorted, and the groups stand in the order of
// their first members, removed ones aside. Items out of view are sorted as well. Without keys: by group number, members
// as they came. Nothing when cancelled. Values are read where they are not cached, on the calling thread.
[[nodiscard]] std::optional<std::vector<ItemId>> sortedOrder(ResultsModel& model, const std::vector<SortKey>& keys,
                                                             GroupedOrder grouped, const PropertySource& properties,
                                                             const CancelFlag& cancel);

// sortedOrder() put in force. False when cancelled; the list is then as it was.
[[nodiscard]] bool sortResults(ResultsModel& model, const std::vector<SortKey>& keys, GroupedOrder grouped,
                               const PropertySource& properties, const CancelFlag& cancel);

}  // namespace kelvane
