// Filling in the texts of the text table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvane {

// The pattern with its first "%s" replaced by the text.
[[nodiscard]] std::u16string withText(std::u16string_view pattern, std::u16string_view text);

[[nodiscard]] std::u16string decimal(std::int64_t number);

// The first characters (UTF-16 units) of a text; a pair of surrogates at the cut is left out whole.
[[nodiscard]] std::u16string_view cutTo(std::u16string_view text, std::size_t most) noexcept;

}  // namespace kelvane
