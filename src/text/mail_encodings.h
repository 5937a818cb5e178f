// How mail writes bytes that may not travel as they are (RFC 2045, section 6).
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// Whatever is no digit of the encoding is passed over; a group that is cut off gives the bytes that it has.
[[nodiscard]] std::string decodeBase64(std::string_view text);

// What is no proper escape stays as it is.
[[nodiscard]] std::string decodeQuotedPrintable(std::string_view text);

// By the name in a Content-Transfer-Encoding field, in lower case; unknown ones leave the text alone.
[[nodiscard]] std::string decodeTransfer(std::string_view text, std::string_view encoding);

// -1 for what is no hexadecimal digit.
[[nodiscard]] int hexDigitOf(char digit);

}  // namespace kelvane
