// Texts of the text table with names and numbers filled in.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "base/text_table.h"

namespace kelvane {

// The text in the language in force, in UTF-8, with %1, %2 ... replaced by the parts in their order. A number without
// a part stays as it is; what a part holds is never filled in again.
[[nodiscard]] std::string filledText(TextId id, std::initializer_list<std::string_view> parts = {});

// "1 file" or "37 files": `many` has the number as its %1.
[[nodiscard]] std::string countedText(std::uint64_t count, TextId one, TextId many);
// "1 file", "5 files"
[[nodiscard]] std::string countedFiles(std::uint64_t count);

}  // namespace kelvane
