// The numbers of the texts in file_properties.inc.
#pragma once

#include "base/text_table.h"

namespace kelvane::desktop_text {

#define TEXT_ROW(number, name, english) inline constexpr TextId name{number};
#include "base/desktop_texts/file_properties.inc"
#undef TEXT_ROW

}  // namespace kelvane::desktop_text
