// Values for lists of any length: what a file's name and place say is not kept with the row, so that a look at a
// million rows leaves no million values behind.
#pragma once

#include "props/property_source.h"

namespace kelvane {

// Worked out of the item alone, in no more time than a cached value is found.
[[nodiscard]] bool isMadeOfName(const PropRef& property);

// Calls `use` once with the value; a text does not outlive the call.
template <class Use>
void withListValue(ItemContext& file, const PropRef& property, const PropertySource& properties, Use use)
{
    if (!isMadeOfName(property)) {
        use(properties.value(file, property));
        return;
    }
    ItemContext passing(file.itemRef());
    use(properties.value(passing, property));
}

}  // namespace kelvane
