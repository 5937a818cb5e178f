// Numbers that documents write into their properties.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvane {

[[nodiscard]] std::string_view trimmed(std::string_view text);

// "P1DT2H30M4.5S" in units of 100 ns; nothing for years and months, whose length nobody knows.
[[nodiscard]] std::optional<std::uint64_t> isoDuration(std::string_view text);

// A whole number up to 2^31 - 1; nothing for anything else.
[[nodiscard]] std::optional<std::uint32_t> wholeNumber(std::string_view text);

}  // namespace kelvane
