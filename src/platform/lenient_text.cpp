#include "platform/lenient_text.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/utf.h"

namespace kelvane {
namespace {

// 0x80 to 0x9F; the rest is as in Latin-1.
constexpr std::array<char16_t, 32> windows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

constexpr char16_t unitOf(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 && code < 0xA0 ? windows1252[code - 0x80u] : char16_t{code};
}

// How many bytes the character takes that begins with this one; 0 for a byte that begins none.
constexpr std::size_t lengthFrom(char first)
{
    const auto code = static_cast<unsigned char>(first);
    return code >= 0xF0 ? 4 : code >= 0xE0 ? 3 : code >= 0xC2 ? 2 : 0;
}

// Only where something whole is before it: a single byte above ASCII is no half of anything.
std::string_view withoutHalfCharacter(std::string_view bytes)
{
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
        const char byte = bytes[bytes.size() - back];
        if ((byte & 0xC0) == 0x80)
            continue;
        return lengthFrom(byte) > back ? bytes.substr(0, bytes.size() - back) : bytes;
    }
    return bytes;
}

bool hasMultibyte(std::string_view bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
}

std::optional<std::u16string> asUtf8(std::string_view bytes)
{
    if (isValidUtf8(bytes))
        return toUtf16(bytes);
    const std::string_view whole = withoutHalfCharacter(bytes);
    if (whole.size() < bytes.size() && hasMultibyte(whole) && isValidUtf8(whole))
        return toUtf16(whole);
    return std::nullopt;
}

}  // namespace

std::u16string lenientText(std::string_view bytes)
{
    bytes = bytes.substr(0, bytes.find('\0'));
    if (auto text = asUtf8(bytes))
        return *std::move(text);
    std::u16string text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(), &unitOf);
    return text;
}

}  // namespace kelvane
