// The kinds as which property values are compared.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/raw_value.h"

namespace kelvane {

enum class PropKind : std::int32_t {
    none = -1,  // cannot be compared
    number = 0,
    date = 1,
    real = 2,
    text = 3,
};

// By the declared variant type of a property.
[[nodiscard]] PropKind kindOf(VarType type) noexcept;

// "Number", "Date", "Float", "Text"; empty for none. Enumerated properties are labelled "Enumerated" by whoever
// lists properties; they compare as numbers.
[[nodiscard]] std::u16string_view kindName(PropKind kind) noexcept;

}  // namespace kelvane
