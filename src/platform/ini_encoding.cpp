#include "platform/ini_encoding.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::string_view littleMark = "\xFF\xFE";
constexpr std::string_view bigMark = "\xFE\xFF";

// The characters of bytes 80 to 9F (Unicode Consortium, bestfit1252.txt).
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::string_view asText(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<std::byte> asBytes(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::u16string fromUtf16(std::string_view bytes, bool bigEndian)
{
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        text += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

std::vector<std::byte> utf16Bytes(std::u16string_view text)
{
    std::vector<std::byte> bytes = asBytes(littleMark);
    bytes.reserve(bytes.size() + text.size() * 2);
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

std::u16string fromAnsi(std::string_view bytes)
{
    std::u16string text;
    text.reserve(bytes.size());
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += byte >= 0x80 && byte < 0xA0 ? upperControls[byte - 0x80] : static_cast<char16_t>(byte);
    }
    return text;
}

std::optional<char> ansiByte(char16_t unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit < 0x100))
        return static_cast<char>(unit);
    const auto found = std::find(upperControls.begin(), upperControls.end(), unit);
    if (found == upperControls.end())
        return std::nullopt;
    return static_cast<char>(0x80 + (found - upperControls.begin()));
}

std::string ansiBytes(std::u16string_view text)
{
    std::string bytes;
    for (const char16_t unit : text)
        bytes += ansiByte(unit).value_or('?');
    return bytes;
}

bool isPlain(std::string_view bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

Result<IniText> decodeUtf16(std::string_view bytes, bool bigEndian)
{
    if (bytes.size() % 2 != 0)
        return Error{ErrorKind::invalid, 0, "it ends within a character"};
    IniText result{fromUtf16(bytes, bigEndian), IniEncoding::utf16};
    if (result.text.find(u'\0') != std::u16string::npos)
        return Error{ErrorKind::invalid, 0, "it holds characters that no text has"};
    return result;
}

Result<IniText> decodeBytes(std::string_view bytes)
{
    if (bytes.find('\0') != std::string_view::npos)
        return Error{ErrorKind::invalid, 0, "it holds characters that no text has"};
    const bool marked = bytes.starts_with(utf8Mark);
    if (marked && isValidUtf8(bytes))
        return IniText{toUtf16(bytes.substr(utf8Mark.size())), IniEncoding::utf8Marked};
    if (!isPlain(bytes) && isValidUtf8(bytes))
        return IniText{toUtf16(bytes), IniEncoding::utf8};
    return IniText{fromAnsi(bytes), IniEncoding::ansi};
}

std::string eightBitBytes(std::u16string_view text, IniEncoding encoding)
{
    if (encoding == IniEncoding::ansi)
        return ansiBytes(text);
    return (encoding == IniEncoding::utf8Marked ? std::string(utf8Mark) : "") + toUtf8(text);
}

}  // namespace

Result<IniText> decodeIni(std::span<const std::byte> bytes)
{
    const std::string_view all = asText(bytes);
    if (all.empty())
        return IniText{};
    if (all.starts_with(littleMark) || all.starts_with(bigMark))
        return decodeUtf16(all.substr(littleMark.size()), all.starts_with(bigMark));
    return decodeBytes(all);
}

std::vector<std::byte> encodeIni(std::u16string_view text, IniEncoding encoding)
{
    if (encoding != IniEncoding::utf16) {
        std::vector<std::byte> bytes = asBytes(eightBitBytes(text, encoding));
        const Result<IniText> again = decodeIni(bytes);
        if (again && again->text == text)
            return bytes;
    }
    return utf16Bytes(text);
}

}  // namespace kelvane
