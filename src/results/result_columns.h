// The columns of the results list and the texts that stand in them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "props/property_source.h"

namespace kelvane {

// Values for lists of any length: those that a file's record holds are not kept with the row, so that looking at a
// million rows leaves no million values behind. The text of one cell: sizes in the program's form, everything else as
// formatRaw() writes it; empty for a missing value.
[[nodiscard]] std::u16string cellText(ItemContext& file, const PropRef& column, const PropertySource& properties);

// The value as text or the number that lists are sorted by; `use` is called with it once, and a text does not outlive
// the call.
template <class Use>
void withListValue(ItemContext& file, const PropRef& column, const PropertySource& properties, Use use)
{
    if (!column.has(property_flag::fromFileRecord))
        return use(properties.value(file, column));
    ItemContext passing(file.itemRef());
    passing.group = file.group;
    use(properties.value(passing, column));
}

// The title of a column, as the catalogue names the property.
[[nodiscard]] std::u16string columnTitle(const PropRef& column);

// "System.ItemNameDisplay,System.Size" and back. `invalid`, naming what is wrong, for an unknown name and for an empty
// list.
[[nodiscard]] Result<std::vector<PropRef>> parseColumns(std::string_view names, const PropertyCatalogue& catalogue);
[[nodiscard]] std::string joinColumns(const std::vector<PropRef>& columns);

}  // namespace kelvane
