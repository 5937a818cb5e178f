// Sizes and values of properties as windows show them: in the language in force, with the decimal point of the place.
// Tables, JSON and the console have their own forms, which other programs read.
#pragma once

#include <QString>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_size.h"
#include "props/property_source.h"

namespace kelvane {

// All of it is safe on every thread.

// "9728 bytes", "1,5 GB"
[[nodiscard]] QString shownSize(std::uint64_t bytes);
// The same as parts of other texts have it.
[[nodiscard]] std::string shownSizeText(FileSize size);
// "1,5 GB (1 610 612 736 bytes)"
[[nodiscard]] QString shownExactSize(std::uint64_t bytes);

// A number with the decimal point of the place; "12.5 %" as well.
[[nodiscard]] QString shownNumber(QString number);

// A cell of a column, from its text as cellText() gives it: attributes in words, rates with units, empty where a file
// has none.
[[nodiscard]] QString shownCell(const PropRef& column, std::u16string_view cell);
[[nodiscard]] QString shownCell(ItemContext& file, const PropRef& column, const PropertySource& source);

// A value from its text as formatRaw() gives it, with nothing of it lost.
[[nodiscard]] QString shownValue(const PropRef& property, std::u16string_view value);

}  // namespace kelvane
