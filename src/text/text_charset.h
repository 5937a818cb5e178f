// Which charset the bytes of a text are in.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/text_decoding.h"

namespace kelvane {

struct DecodedText {
    std::u16string text;  // without byte-order mark
    std::string charset;  // "utf-8", "utf-16le", "windows-1251", ...
};

// By a byte-order mark, else the charset that the document declares (may be empty, or nonsense), else unmistakable
// UTF-16, UTF-8, the likeliest charset, and at last windows-1252, which gives every byte a meaning. The bytes may end
// within a character.
[[nodiscard]] DecodedText decodeText(std::span<const std::byte> bytes, const TextDecoding& decoding,
                                     std::string_view declared = {});

// The charset by a byte-order mark alone; empty for none.
[[nodiscard]] std::string_view markedCharset(std::span<const std::byte> bytes);

// What a declared charset means in practice, in lower case: labels of a subset mean the superset that programs really
// write (WHATWG Encoding Standard, "Names and labels"), so "iso-8859-1" is windows-1252.
[[nodiscard]] std::string usualCharset(std::string_view declared);

// Whether bytes are a text in some charset, as far as they tell: no zero bytes but those of UTF-16, hardly any control
// characters. False where there are none.
[[nodiscard]] bool looksLikeText(std::span<const std::byte> head);

[[nodiscard]] inline std::string_view asCharacters(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
[[nodiscard]] inline std::span<const std::byte> asBytes(std::string_view characters)
{
    return std::as_bytes(std::span(characters.data(), characters.size()));
}

}  // namespace kelvane
