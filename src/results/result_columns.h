// The columns of the results list and the texts that stand in them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "props/property_source.h"

namespace kelvane {

// The text of one cell: sizes as sizeText() writes them, dates as "2026-11-21 02:31" in UTC, durations as
// "0:03:25", everything else as formatRaw() does; empty for a missing value.
[[nodiscard]] std::u16string cellText(ItemContext& file, const PropRef& column, const PropertySource& properties);

// Whether the values are numbers of bytes.
[[nodiscard]] bool isSize(const PropRef& column);

// Whether the values are lengths of time, in 100-nanosecond units.
[[nodiscard]] bool isDuration(const PropRef& column);

// The title of a column, as the catalogue names the property.
[[nodiscard]] std::u16string columnTitle(const PropRef& column);

// "System.ItemNameDisplay,System.Size" and back. `invalid`, naming what is wrong, for an unknown name and for an empty
// list.
[[nodiscard]] Result<std::vector<PropRef>> parseColumns(std::string_view names, const PropertyCatalogue& catalogue);
[[nodiscard]] std::string joinColumns(const std::vector<PropRef>& columns);

}  // namespace kelvane
