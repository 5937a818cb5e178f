// Lists and paths that are kept as one text.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Separated by commas. Blanks around an entry and empty entries are dropped.
[[nodiscard]] std::vector<std::u16string> splitTexts(std::u16string_view text);
[[nodiscard]] std::u16string joinTexts(const std::vector<std::u16string>& texts);

// The form in which names of values are held against one another: A to Z in lower case.
[[nodiscard]] std::u16string lowerKey(std::u16string_view name);

// A path of settings is a text. A name of Linux that is no UTF-8 cannot be told by one: its bytes become U+FFFD.
[[nodiscard]] std::u16string textOfPath(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path pathOfText(std::u16string_view text);

}  // namespace kelvane
