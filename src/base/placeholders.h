// The placeholders of a text: where the program fills in numbers and names.
#pragma once

#include <string_view>

namespace kelvane {

// True when a translation can be filled in where the English text is: the same printf-like placeholders (%s, %02d) in
// the same order, and the same numbered ones (%1) in any order. "%%" is no placeholder.
[[nodiscard]] bool samePlaceholders(std::u16string_view english, std::u16string_view translation);

}  // namespace kelvane
