// The one table of the texts that the program shows: every text has one number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kelvane {

// The names and numbers of the rows of text_rows.inc; a new text is a new row there.
enum class TextId : std::uint16_t {
#define TEXT_ROW(number, name, english) name = number,
#include "base/text_rows.inc"
#undef TEXT_ROW
};

// Numbers are below this.
inline constexpr std::size_t textNumberLimit = 512;

// The text in the language in force; never fails (an unknown number gives an empty text). Safe on every thread.
[[nodiscard]] std::u16string_view text(TextId id) noexcept;

}  // namespace kelvane
