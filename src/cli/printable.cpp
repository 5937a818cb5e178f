#include "cli/printable.h"

#include <algorithm>

#include "base/utf.h"

namespace kelvane {
namespace {

bool isControl(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

// The control characters U+0080 to U+009F, which some terminals obey, are C2 80 to C2 9F in UTF-8.
bool isLateControl(std::string_view text, std::size_t at)
{
    return text[at] == '\xC2' && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
}

// What turns the direction of the text behind it, and so lets a name seem to end otherwise than it does: U+200E,
// U+200F, U+202A to U+202E and U+2066 to U+2069, in UTF-8 three bytes each.
bool isDirection(std::string_view text, std::size_t at)
{
    const std::string_view start = text.substr(at, 2);
    const unsigned last = at + 2 < text.size() ? static_cast<unsigned char>(text[at + 2]) : 0;
    if (start == "\xE2\x81")
        return last >= 0xA6 && last <= 0xA9;
    return start == "\xE2\x80" && (last == 0x8E || last == 0x8F || (last >= 0xAA && last <= 0xAE));
}

// Bytes of the character at `at` that no terminal should get; 0 where it may.
std::size_t escapedLength(std::string_view text, std::size_t at)
{
    if (isControl(text[at]))
        return 1;
    if (isLateControl(text, at))
        return 2;
    return isDirection(text, at) ? 3 : 0;
}

bool holdsAnyToEscape(std::string_view text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (escapedLength(text, at) > 0)
            return true;
    }
    return false;
}

void appendEscape(std::string& line, std::string_view character)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const char c = character.back();
    const auto byte = static_cast<unsigned char>(c);
    line += '\\';
    if (character.size() == 3)
        ((line += 'u') += "20") += {digits[character[1] == '\x81' ? 6 : (byte >> 4) - 8U], digits[byte & 15]};
    else if (c == '\n' || c == '\t' || c == '\r')
        line += c == '\n' ? 'n' : c == '\t' ? 't' : 'r';
    else
        (line += 'x') += {digits[byte >> 4], digits[byte & 15]};
}

}  // namespace

// A backslash is doubled where anything else is escaped: what is typed as "\n" differs from a line feed.
std::string printable(std::string_view bytes)
{
    const std::string text = displayText(bytes);
    if (!holdsAnyToEscape(text))
        return text;
    std::string line;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = escapedLength(text, at);
        if (length > 0)
            appendEscape(line, std::string_view(text).substr(at, length));
        else
            line.append(text[at] == '\\' ? 2 : 1, text[at]);
        at += std::max<std::size_t>(length, 1);
    }
    return line;
}

}  // namespace kelvane
