// Order and equality of comparable values.
#pragma once

#include <compare>
#include <cstdint>

#include "props/property_source.h"

namespace kelvane {

// A total order that brings equal values together: missing values first, then by kind, numbers and dates as signed
// 64-bit, floats by value (NaN last), texts by their UTF-16 units, case included.
[[nodiscard]] std::weak_ordering compareValues(const PropValue& a, const PropValue& b);

// Equality in exact searches: a missing value equals nothing, not even another missing one; dates are equal within the
// tolerance (100-ns units).
[[nodiscard]] bool equalValues(const PropValue& a, const PropValue& b, std::int64_t dateTolerance);

}  // namespace kelvane
