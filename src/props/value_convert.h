// From a raw value, as read, to a comparable one.
#pragma once

#include <optional>
#include <string>

#include "platform/raw_value.h"
#include "props/prop_cache.h"
#include "props/property_catalogue.h"

namespace kelvane {

// Fills kind, flags, value and text of a node from the raw value; the node keeps the raw value and its pending mark is
// cleared. An empty raw value gives a missing node. Never fails: what cannot be converted becomes 0, as the property
// system itself does.
void convertValue(PROPCACHE& node, const PropRef& property, RawValue raw);

// The comparable bits of a whole number or a file time that is held as such bits under a type; 0 for other types.
[[nodiscard]] std::uint64_t wholeBits(VarType type, std::uint64_t bits) noexcept;

// The comparable bits of a single number or date; 0 for a vector and for a raw type that does not suit the kind.
[[nodiscard]] std::uint64_t scalarBits(PropKind kind, const RawValue& raw) noexcept;

// Degrees, minutes, seconds (and on, each a sixtieth of the one before) as decimal degrees; a scalar as it is;
// nothing for any other type.
[[nodiscard]] std::optional<double> sexagesimal(const RawValue& raw);

// The value as text: vectors joined by "; ", numbers in decimal, dates in ISO 8601, booleans as "True" or "False".
[[nodiscard]] std::u16string formatRaw(const RawValue& raw);

}  // namespace kelvane
