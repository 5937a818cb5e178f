// The bytes of an INI file as text and back.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"

namespace kelvane {

enum class IniEncoding {
    utf16,       // little-endian with a byte-order mark: the only one in which the profile functions keep every text
    utf8,        // without a mark
    utf8Marked,  // with the three bytes EF BB BF
    ansi,        // Windows-1252
};

struct IniText {
    std::u16string text;  // without the mark
    IniEncoding encoding = IniEncoding::utf16;
};

// Bytes without a mark are UTF-8 when they are well-formed and not plain ASCII, else Windows-1252, whose five bytes
// without a character stand for the control characters of the same number. UTF-16 in big-endian order is read as well.
// `invalid`: half a character at the end, or a NUL anywhere.
[[nodiscard]] Result<IniText> decodeIni(std::span<const std::byte> bytes);

// UTF-16 after all when the encoding lacks a character of the text, or when decodeIni() would read something else.
[[nodiscard]] std::vector<std::byte> encodeIni(std::u16string_view text, IniEncoding encoding);

}  // namespace kelvane
