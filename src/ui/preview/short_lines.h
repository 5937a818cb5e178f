// Texts as views take them without a pause: whatever a file holds, no line of it is long.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane {

struct ShortLines {
    std::u16string text;
    bool broken = false;  // a line was too long, and goes on in the next one
    bool cut = false;     // there were more lines
};

// Lines end with "\n"; one of more than mostCharacters is broken, though not within a character. At least 2.
[[nodiscard]] ShortLines shortLines(std::u16string_view text, std::size_t mostCharacters, std::size_t mostLines);

}  // namespace kelvane
