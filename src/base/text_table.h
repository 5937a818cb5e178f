// The one table of the texts that the program shows: every text has one number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kelvane {

// The names and numbers of the rows of text_rows.inc; a new text is a new row there.
enum class TextId : std::uint16_t {
#define TEXT_ROW(number, name, english) name = number,
#include "base/text_rows.inc"
#undef TEXT_ROW
};

// Numbers are below this.
inline constexpr std::size_t textNumberLimit = 2200;

// The texts of a translation by their numbers; a number that is missing stays English.
using TextsByNumber = std::map<std::uint16_t, std::u16string>;

// The text in the language in force; never fails (an unknown number gives an empty text). Safe on every thread. The
// view holds until the translation changes, which happens at start and end only.
[[nodiscard]] std::u16string_view text(TextId id) noexcept;

// The text as it stands in the rows, whatever the language in force is.
[[nodiscard]] std::u16string_view englishText(TextId id) noexcept;

// Puts a translation in force in the place of any other. False, and nothing changes, without the name of its language
// (TextId::languageName), which tells a translation from any other list of texts. A text that is empty, or whose
// placeholders are not those of the English one, stays English. Call before other threads ask for texts.
[[nodiscard]] bool installTranslation(const TextsByNumber& texts);

// English again. Call when no other thread asks for texts any more.
void releaseTranslation() noexcept;

// A translation is in force.
[[nodiscard]] bool isTranslated() noexcept;

}  // namespace kelvane
