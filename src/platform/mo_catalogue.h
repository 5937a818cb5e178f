// Reads the compiled catalogues of GNU gettext (".mo"), as the GNU gettext manual describes them under "The Format of
// GNU MO Files". Pure logic on bytes from a file that anybody may have put there: every offset is checked.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "base/result.h"

namespace kelvane {

// Larger files are no catalogues of ours.
inline constexpr std::size_t largestMoFile = 4u << 20;

// One text; the views are valid during the call only. The header of the catalogue has an empty original.
struct MoEntry {
    std::string_view context;  // empty when the text has none
    std::string_view original;
    std::string_view translation;
};

// Calls sink for every entry in the order of the file; of plural forms the first counts. `invalid` for a damaged
// file, of which the sink may have seen a part.
[[nodiscard]] Status readMoCatalogue(std::span<const std::byte> file, const std::function<void(const MoEntry&)>& sink);

}  // namespace kelvane
