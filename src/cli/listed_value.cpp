#include "cli/listed_value.h"

namespace kelvane {

Json listedValue(const Listing& listing, ItemId id, const PropRef& column)
{
    ItemContext& file = listing.results.file(id);
    const PropertySource& properties = *listing.shape.properties;
    const RawValue& raw = properties.cached(file, column).raw;
    return valueJson(properties.value(file, column), raw);
}

}  // namespace kelvane
