// UTF-16 that need not be well-formed, as bytes and back: the names of Windows files.
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// WTF-8 (Sapin, "The WTF-8 encoding"): UTF-8, and each lone surrogate as three bytes. Two different names never become
// the same bytes, as they would with a replacement character. Bytes that are no WTF-8 become U+FFFD.
[[nodiscard]] std::u16string unitsFromWtf8(std::string_view bytes);
[[nodiscard]] std::string wtf8FromUnits(std::u16string_view units);

}  // namespace kelvane
