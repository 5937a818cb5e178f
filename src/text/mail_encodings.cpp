#include "text/mail_encodings.h"

#include <algorithm>
#include <cstdint>

namespace kelvane {
namespace {

int base64Digit(char digit)
{
    if (digit >= 'A' && digit <= 'Z')
        return digit - 'A';
    if (digit >= 'a' && digit <= 'z')
        return digit - 'a' + 26;
    if (digit >= '0' && digit <= '9')
        return digit - '0' + 52;
    if (digit == '+')
        return 62;
    return digit == '/' ? 63 : -1;
}

// Blanks at the end of a line were added on the way.
std::string_view withoutTrailingBlanks(std::string_view line)
{
    const std::size_t last = line.find_last_not_of(" \t\r");
    return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

void appendUnescaped(std::string_view line, std::string& bytes)
{
    for (std::size_t i = 0; i < line.size(); ++i) {
        const int high = line[i] == '=' && i + 2 < line.size() ? hexDigitOf(line[i + 1]) : -1;
        const int low = high >= 0 ? hexDigitOf(line[i + 2]) : -1;
        bytes += low >= 0 ? static_cast<char>(high * 16 + low) : line[i];
        i += low >= 0 ? 2 : 0;
    }
}

}  // namespace

int hexDigitOf(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    const char lower = static_cast<char>(digit | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string decodeBase64(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char digit : text) {
        // Padding ends a group; some programs join encoded pieces.
        if (digit == '=')
            count = 0;
        const int value = base64Digit(digit);
        if (value < 0)
            continue;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

std::string decodeQuotedPrintable(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = withoutTrailingBlanks(text.substr(0, end));
        const bool soft = line.ends_with('=');
        line.remove_suffix(soft ? 1 : 0);
        appendUnescaped(line, bytes);
        if (end == std::string_view::npos)
            break;
        if (!soft)
            bytes += '\n';
        text.remove_prefix(end + 1);
    }
    return bytes;
}

std::string decodeTransfer(std::string_view text, std::string_view encoding)
{
    if (encoding == "base64")
        return decodeBase64(text);
    return encoding == "quoted-printable" ? decodeQuotedPrintable(text) : std::string(text);
}

}  // namespace kelvane
