// Text between the system's wide strings and the program's own UTF-16 and WTF-8.
#pragma once

#include <string>
#include <string_view>

#include "base/wtf8.h"

namespace kelvane::windows_os {

[[nodiscard]] inline std::wstring toWide(std::u16string_view text)
{
    return {text.begin(), text.end()};
}
[[nodiscard]] inline std::wstring wideFromWtf8(std::string_view bytes)
{
    return toWide(unitsFromWtf8(bytes));
}
[[nodiscard]] inline std::u16string fromWide(std::wstring_view text)
{
    return {text.begin(), text.end()};
}
[[nodiscard]] inline std::string wtf8FromWide(std::wstring_view text)
{
    return wtf8FromUnits(fromWide(text));
}

}  // namespace kelvane::windows_os
