// The numbers of the texts that only the desktop program shows. They are looked up as all others are: text().
#pragma once

#include "base/text_table.h"

namespace kelvane::desktop_text {

#define TEXT_ROW(number, name, english) inline constexpr TextId name{number};
#include "base/desktop_text_rows.inc"
#undef TEXT_ROW

}  // namespace kelvane::desktop_text
