// Names in the system's own encoding, to and from text.
#pragma once

#include <string>
#include <string_view>

#include "base/utf.h"
#include "base/wtf8.h"
#include "platform/file_info.h"

namespace kelvane {

// The name as a text to show and to compare. What is no valid text becomes lone surrogates, so that two names that
// differ never compare equal, and is shown as U+FFFD. Never turned back into a name.
[[nodiscard]] inline std::u16string displayFromNative(std::string_view name)
{
    return toUtf16KeepingBytes(name);
}
[[nodiscard]] inline std::u16string displayFromNative(std::wstring_view name)
{
    return std::u16string(name.begin(), name.end());
}

// A name stored in a file as bytes: the same bytes on Linux, taken as WTF-8 on Windows.
template <class Char = NativeString::value_type>
[[nodiscard]] std::basic_string<Char> nativeFromBytes(std::string_view bytes)
{
    if constexpr (sizeof(Char) == 1) {
        return std::basic_string<Char>(bytes);
    } else {
        const std::u16string text = unitsFromWtf8(bytes);
        return std::basic_string<Char>(text.begin(), text.end());
    }
}

// The form in which path rules, messages and reports hold a name: the same bytes on Linux, WTF-8 on Windows.
[[nodiscard]] inline std::string bytesFromNative(std::string_view name)
{
    return std::string(name);
}
[[nodiscard]] inline std::string bytesFromNative(std::wstring_view name)
{
    return wtf8FromUnits(std::u16string(name.begin(), name.end()));
}

// The same for a look only: a view where the name is bytes already.
[[nodiscard]] inline std::string_view nameBytes(std::string_view name)
{
    return name;
}
[[nodiscard]] inline std::string nameBytes(std::wstring_view name)
{
    return bytesFromNative(name);
}

}  // namespace kelvane
