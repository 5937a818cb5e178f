// Values of properties out of what documents write.
#pragma once

#include <optional>
#include <string_view>

#include "base/file_time.h"

namespace kelvane {

[[nodiscard]] std::string_view trimmed(std::string_view text);

// ISO 8601 from the year alone to fractions of seconds, "2024-05-03T10:11:12.5+02:00"; without a zone it is taken for
// UTC. Nothing for what is no date or lies outside of the years 1601 to 9999.
[[nodiscard]] std::optional<FileTime> isoDate(std::string_view text);

// "P1DT2H30M4.5S" in units of 100 ns; nothing for years and months, whose length nobody knows.
[[nodiscard]] std::optional<std::uint64_t> isoDuration(std::string_view text);

// A whole number up to 2^31 - 1; nothing for anything else.
[[nodiscard]] std::optional<std::uint32_t> wholeNumber(std::string_view text);

}  // namespace kelvane
