// The value of a property in a listing, as programs read it.
#pragma once

#include "cli/report.h"
#include "cli/value_json.h"

namespace kelvane {

// Null for a missing value. Reads it when it was not read yet.
[[nodiscard]] Json listedValue(const Listing& listing, ItemId id, const PropRef& column);

}  // namespace kelvane
