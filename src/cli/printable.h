// Text from outside on its way to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kelvane {

// The bytes as one line of UTF-8 that cannot disturb a terminal: what is no UTF-8 becomes U+FFFD, control characters
// become "\n", "\t" or "\x1b", those that turn the direction of text "\u202e"; "\" is doubled where anything is so
// written. For people; programs read JSON, CSV or NUL-terminated names.
[[nodiscard]] std::string printable(std::string_view bytes);

}  // namespace kelvane
