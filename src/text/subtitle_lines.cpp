#include "text/subtitle_lines.h"

#include <algorithm>

#include "text/html_tokens.h"

namespace kelvane {
namespace {

constexpr bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

bool holdsOnly(std::u16string_view text, std::u16string_view units)
{
    return text.find_first_not_of(units) == std::u16string_view::npos;
}

// "{10}", "[00:12.00]" at the front: its length, 0 for none.
std::size_t timeMark(std::u16string_view text, char16_t opening, char16_t closing)
{
    constexpr std::size_t longest = 16;
    if (!text.starts_with(opening))
        return 0;
    const std::size_t end = text.substr(0, longest).find(closing);
    const bool time = end != std::u16string_view::npos && end > 1 && isDigit(text[1]) &&
                      holdsOnly(text.substr(1, end - 1), u"0123456789:.");
    return time ? end + 1 : 0;
}

std::u16string_view withoutTimeMarks(std::u16string_view line, char16_t opening, char16_t closing)
{
    while (const std::size_t length = timeMark(line, opening, closing))
        line.remove_prefix(length);
    return line;
}

// "[ar:Somebody]", "[offset:+200]": tags of a song's words.
bool isNameTag(std::u16string_view line)
{
    const std::size_t colon = line.find(u':');
    return line.starts_with(u'[') && line.ends_with(u']') && colon != std::u16string_view::npos && colon > 1 &&
           colon < 8 &&
           std::all_of(line.begin() + 1, line.begin() + static_cast<std::ptrdiff_t>(colon),
                       [](char16_t unit) { return unit >= u'a' && unit <= u'z'; });
}

// The length of a code that is not said; 0 for none at the front.
std::size_t codeLength(std::u16string_view text)
{
    constexpr std::size_t longest = 200;
    text = text.substr(0, longest);
    const bool tag = text.size() > 2 && text[0] == u'<' && text[1] != u' ' && text[1] != u'<';
    const bool code = text.size() > 2 && text[0] == u'{' && (text[1] == u'\\' || text.substr(2, 1) == u":");
    if (!tag && !code)
        return 0;
    const std::size_t end = text.find(tag ? u'>' : u'}');
    return end != std::u16string_view::npos ? end + 1 : 0;
}

bool isBreakCode(std::u16string_view text)
{
    return text.starts_with(u"\\N") || text.starts_with(u"\\n") || text.starts_with(u"\\h");
}

}  // namespace

bool isCueTiming(std::u16string_view line)
{
    if (line.empty() || !isDigit(line.front()))
        return false;
    const std::size_t arrow = line.find(u"-->");
    if (arrow != std::u16string_view::npos)
        return holdsOnly(line.substr(0, arrow), u"0123456789:., ");
    return line.find(u':') != std::u16string_view::npos && line.find(u',') != std::u16string_view::npos &&
           holdsOnly(line, u"0123456789:., ");
}

std::optional<std::u16string_view> timedLine(std::u16string_view line)
{
    if (timeMark(line, u'{', u'}') > 0)
        return withoutTimeMarks(line, u'{', u'}');
    if (timeMark(line, u'[', u']') > 0)
        return withoutTimeMarks(line, u'[', u']');
    return isNameTag(line) ? std::optional(std::u16string_view()) : std::nullopt;
}

std::u16string spokenText(std::u16string_view line)
{
    std::u16string spoken;
    while (!line.empty()) {
        std::size_t length = codeLength(line);
        if (length == 0) {
            length = isBreakCode(line) ? 2 : 1;
            spoken += length == 2 || line.front() == u'|' ? u' ' : line.front();
        }
        line.remove_prefix(length);
    }
    return withoutReferences(spoken);
}

}  // namespace kelvane
