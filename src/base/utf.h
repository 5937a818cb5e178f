// UTF-8 and UTF-16: values and messages are UTF-16, files and terminals are bytes.
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// What many programs of Windows put in front of a text in UTF-8.
inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
[[nodiscard]] bool isValidUtf8(std::string_view bytes) noexcept;

// Every malformed byte sequence becomes U+FFFD, as the Unicode Standard recommends (maximal subpart practice).
[[nodiscard]] std::u16string toUtf16(std::string_view bytes);

// The same, but each byte of a malformed sequence becomes a lone surrogate, U+DC00 + byte (as in Python's PEP 383), so
// that different bytes stay different texts. toUtf8() shows each of them as U+FFFD.
[[nodiscard]] std::u16string toUtf16KeepingBytes(std::string_view bytes);

// A lone surrogate becomes U+FFFD.
[[nodiscard]] std::string toUtf8(std::u16string_view text);

// The bytes with every byte other than A-Z a-z 0-9 - . _ ~ / written as %XX (RFC 3986): any name, shown safely.
[[nodiscard]] std::string percentEncode(std::string_view bytes);

// The bytes as text that a terminal or a JSON document can hold: valid UTF-8 as it is, the rest as U+FFFD.
[[nodiscard]] std::string displayText(std::string_view bytes);

}  // namespace kelvane
