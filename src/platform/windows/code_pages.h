// The system's numbers for charsets, by the names that the rest of the world has for them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane::windows_os {

inline constexpr unsigned utf16LittleEndian = 1200;
inline constexpr unsigned utf16BigEndian = 1201;

// By a name of the IANA registry or a usual alias, in any case; nothing for an unknown one. UTF-16 without a byte order
// is little-endian.
[[nodiscard]] std::optional<unsigned> codePageOf(std::string_view charset);
// A name that codePageOf() knows; nothing for a code page without one.
[[nodiscard]] std::optional<std::string> codePageName(unsigned codePage);

}  // namespace kelvane::windows_os
