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

void appendEscape(std::string& line, char c)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    line += '\\';
    if (c == '\n' || c == '\t' || c == '\r')
        line += c == '\n' ? 'n' : c == '\t' ? 't' : 'r';
    else
        (line += 'x') += {digits[byte >> 4], digits[byte & 15]};
}

}  // namespace

std::string printable(std::string_view bytes)
{
    const std::string text = displayText(bytes);
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isControl(text[i]))
            appendEscape(line, text[i]);
        else if (isLateControl(text, i))
            appendEscape(line, text[++i]);
        else
            line += text[i];
    }
    return line;
}

}  // namespace kelvane
