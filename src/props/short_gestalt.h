// The gestalt count of two short runs, quickly: what comparing documents spends its time on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvane {

inline constexpr std::size_t longestShortRun = 256;

// What gestaltMatch() gives; nothing when a run is longer than that, or has too many different characters (254 are not
// too many). Takes about 150 KiB of the stack, most of which is not touched.
[[nodiscard]] std::optional<std::uint32_t> shortGestaltMatch(std::u16string_view x, std::u16string_view y);

}  // namespace kelvane
