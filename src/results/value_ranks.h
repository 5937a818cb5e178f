// Which place each value of a column has among all of them, so that sorting asks for no value twice.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "props/property_source.h"
#include "results/results_model.h"

namespace kelvane {

struct ValueRanks {
    std::vector<std::uint32_t> ranks;  // one an item: from 0, equal values share one; `distinct` for a missing value
    std::uint32_t distinct = 0;
};

// Numbers and dates by their value, texts by appendSortKey(). Nothing when cancelled.
[[nodiscard]] std::optional<ValueRanks> rankValues(ResultsModel& model, std::span<const ItemId> items,
                                                   const PropRef& property, const PropertySource& properties,
                                                   const CancelFlag& cancel);

}  // namespace kelvane
