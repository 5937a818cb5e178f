// Texts side by side, so that what belongs together stands in one row.
#pragma once

#include <string>
#include <vector>

#include "ui/preview/text_diff.h"

namespace kelvane {

struct AlignedLine {
    std::u16string text;
    bool there = false;            // false: blank, so that what follows lines up
    bool differs = false;          // from the first text's line of this row, or it has none there
    std::vector<TextRange> marks;  // what differs within it
};

struct AlignedTexts {
    std::vector<std::vector<AlignedLine>> columns;  // one a text, all as long
    std::vector<std::size_t> places;                // rows at which differing stretches begin
    bool tooDifferent = false;                      // some were not lined up
};

// Each is held against the first one. At least one text.
[[nodiscard]] AlignedTexts alignTexts(const std::vector<std::u16string>& texts);

}  // namespace kelvane
