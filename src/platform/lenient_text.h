// Texts of files whose charset is not told, or told wrongly.
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// Up to the first zero byte: UTF-8 where the bytes are well-formed UTF-8 (a character that the end of a field of fixed
// length cuts off is left out), Windows-1252 otherwise, with what that leaves open as control characters (WHATWG
// Encoding Standard). Formats demand ASCII or Latin-1, and programs write what their system uses.
[[nodiscard]] std::u16string lenientText(std::string_view bytes);

}  // namespace kelvane
