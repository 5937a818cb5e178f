#include "platform/ini_values.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::u16string_view escapeMark = u"<escaped>";
constexpr std::u16string_view digits = u"0123456789ABCDEF";

bool isControl(char16_t unit)
{
    return unit < u' ' && unit != u'\t';
}

// Blanks of any script: other readers of the file may trim those too.
bool isAnySpace(char16_t unit)
{
    constexpr std::u16string_view others = u"\u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000\uFEFF";
    return isIniBlank(unit) || (unit >= 0x2000 && unit <= 0x200B) || others.find(unit) != std::u16string_view::npos;
}

bool isQuoted(std::u16string_view text)
{
    return text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'') && text.back() == text.front();
}

std::optional<unsigned> digitOf(char16_t unit)
{
    if (unit >= u'a' && unit <= u'f')
        unit = static_cast<char16_t>(unit - u'a' + u'A');
    const std::size_t at = digits.find(unit);
    return at == std::u16string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(at));
}

std::optional<unsigned> byteAt(std::u16string_view text, std::size_t at)
{
    if (at + 2 > text.size())
        return std::nullopt;
    const std::optional<unsigned> high = digitOf(text[at]);
    const std::optional<unsigned> low = digitOf(text[at + 1]);
    return high && low ? std::optional(*high * 16 + *low) : std::nullopt;
}

void appendByte(std::u16string& text, unsigned byte)
{
    text += digits[byte / 16 % 16];
    text += digits[byte % 16];
}

std::u16string escaped(std::u16string_view text)
{
    std::u16string result(escapeMark);
    for (const char16_t unit : text) {
        if (isControl(unit) || unit == u'%') {
            result += u'%';
            appendByte(result, unit);
        } else {
            result += unit;
        }
    }
    return result;
}

// A percent sign that begins no escape stands for itself: somebody may have edited the line.
std::u16string unescaped(std::u16string_view text)
{
    std::u16string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::optional<unsigned> byte = text[at] == u'%' ? byteAt(text, at + 1) : std::nullopt;
        result += byte ? static_cast<char16_t>(*byte) : text[at];
        at += byte ? 2 : 0;
    }
    return result;
}

std::u16string safeName(std::u16string_view name, std::u16string_view forbidden, std::u16string_view forbiddenFirst)
{
    std::u16string safe(name);
    for (char16_t& unit : safe) {
        if (isControl(unit) || forbidden.find(unit) != std::u16string_view::npos)
            unit = u'_';
    }
    if (!safe.empty() && (isIniBlank(safe.front()) || forbiddenFirst.find(safe.front()) != std::u16string_view::npos))
        safe.front() = u'_';
    if (!safe.empty() && isIniBlank(safe.back()))
        safe.back() = u'_';
    return safe;
}

unsigned baseOf(std::u16string_view text)
{
    if (text.starts_with(u"0x"))
        return 16;
    if (text.starts_with(u"0o"))
        return 8;
    return text.starts_with(u"0b") ? 2 : 10;
}

}  // namespace

bool isIniBlank(char16_t unit) noexcept
{
    return unit == u' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0x1A;
}

std::u16string_view trimIniBlanks(std::u16string_view text) noexcept
{
    while (!text.empty() && isIniBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isIniBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::u16string iniValueName(std::u16string_view name)
{
    return name.empty() ? u"@" : safeName(name, u"=", u"[;");
}

std::u16string iniSectionName(std::u16string_view name)
{
    return safeName(name, u"]", u"");
}

std::u16string iniTextLine(std::u16string_view text)
{
    std::u16string line(text);
    if (std::any_of(text.begin(), text.end(), isControl) || text.starts_with(escapeMark))
        line = escaped(text);
    if (!line.empty() && (isAnySpace(line.front()) || isAnySpace(line.back()) || isQuoted(line)))
        line = u'"' + line + u'"';
    return line;
}

std::u16string textFromIniLine(std::u16string_view line)
{
    line = trimIniBlanks(line);
    if (isQuoted(line))
        line = line.substr(1, line.size() - 2);
    return line.starts_with(escapeMark) ? unescaped(line.substr(escapeMark.size())) : std::u16string(line);
}

std::uint32_t numberFromIniText(std::u16string_view text) noexcept
{
    text = trimIniBlanks(text);
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+'))
        text.remove_prefix(1);
    const unsigned base = baseOf(text);
    if (base != 10)
        text.remove_prefix(2);
    std::uint32_t number = 0;
    for (const char16_t unit : text) {
        const std::optional<unsigned> digit = digitOf(unit);
        if (!digit || *digit >= base)
            break;
        number = number * base + *digit;
    }
    return negative ? 0u - number : number;
}

std::u16string iniNumberText(std::uint32_t number)
{
    const std::string text = std::to_string(static_cast<std::int32_t>(number));
    return {text.begin(), text.end()};
}

std::u16string iniBlockText(std::span<const std::byte> block)
{
    std::u16string text;
    text.reserve(block.size() * 2 + 2);
    unsigned sum = 0;
    for (const std::byte byte : block) {
        appendByte(text, std::to_integer<unsigned>(byte));
        sum += std::to_integer<unsigned>(byte);
    }
    appendByte(text, sum % 256);
    return text;
}

std::optional<std::vector<std::byte>> blockFromIniText(std::u16string_view text)
{
    std::vector<std::byte> block;
    if (text.size() == 2)
        return block;
    if (text.empty() || text.size() % 2 != 0)
        return std::nullopt;
    unsigned sum = 0;
    for (std::size_t at = 0; at < text.size(); at += 2) {
        const std::optional<unsigned> byte = byteAt(text, at);
        if (!byte)
            return std::nullopt;
        block.push_back(static_cast<std::byte>(*byte));
        sum += *byte;
    }
    const auto check = std::to_integer<unsigned>(block.back());
    block.pop_back();
    return (sum - check) % 256 == check ? std::optional(std::move(block)) : std::nullopt;
}

}  // namespace kelvane
