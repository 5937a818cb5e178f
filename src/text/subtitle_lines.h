// The lines of subtitle files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// "00:00:01,000 --> 00:00:04,000", "0:00:01.00,0:00:04.00": the line between a number or name and what is said.
[[nodiscard]] bool isCueTiming(std::u16string_view line);

// What is said in a line that carries its own times: "{10}{50}text", "[10][50]text", "[00:12.00]text"; nothing for any
// other line. Empty for one that only names something.
[[nodiscard]] std::optional<std::u16string_view> timedLine(std::u16string_view line);

// Without tags ("<i>", "<v Ada>"), codes ("{\an8}", "\N") and character references; the line's own breaks are blanks.
[[nodiscard]] std::u16string spokenText(std::u16string_view line);

}  // namespace kelvane
