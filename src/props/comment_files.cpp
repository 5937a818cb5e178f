#include "props/comment_files.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::u16string_view blanks = u" \t";

std::u16string_view trimmed(std::u16string_view text)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Takes the first line off the text; line ends are LF, CR LF or CR.
std::u16string_view takeLine(std::u16string_view& text)
{
    const auto end = std::min(text.find_first_of(u"\r\n"), text.size());
    const auto line = text.substr(0, end);
    const bool both = text.substr(end, 2) == u"\r\n";
    text.remove_prefix(std::min(end + (both ? 2 : 1), text.size()));
    return line;
}

std::u16string_view withoutQuotes(std::u16string_view value)
{
    const bool quoted =
        value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') && value.front() == value.back();
    return quoted ? value.substr(1, value.size() - 2) : value;
}

struct Description {
    std::u16string_view name;
    std::u16string_view comment;
};

Description splitDescription(std::u16string_view line)
{
    std::size_t nameEnd = 0;
    if (!line.empty() && (line[0] == u'"' || line[0] == u'\'')) {
        nameEnd = line.find(line[0], 1);
        if (nameEnd != std::u16string_view::npos)
            return {line.substr(1, nameEnd - 1), line.substr(nameEnd + 1)};
    }
    nameEnd = std::min(line.find_first_of(blanks), line.size());
    return {line.substr(0, nameEnd), line.substr(nameEnd)};
}

// Programs append data of their own behind an end-of-transmission character.
std::u16string cleanComment(std::u16string_view comment)
{
    return std::u16string(trimmed(comment.substr(0, comment.find(u'\x04'))));
}

}  // namespace

std::u16string iniValue(std::u16string_view ini, std::u16string_view section, std::u16string_view key,
                        const TextFolding& folding)
{
    const std::u16string wantedSection = u"[" + folding.lower(section) + u"]";
    const std::u16string wantedKey = folding.lower(key);
    bool inside = false;
    while (!ini.empty()) {
        const auto line = trimmed(takeLine(ini));
        if (line.starts_with(u'[')) {
            inside = folding.lower(line) == wantedSection;
            continue;
        }
        const auto equals = line.find(u'=');
        if (inside && equals != std::u16string_view::npos &&
            folding.lower(trimmed(line.substr(0, equals))) == wantedKey)
            return std::u16string(withoutQuotes(trimmed(line.substr(equals + 1))));
    }
    return {};
}

std::u16string describedComment(std::u16string_view descriptions, std::u16string_view fileName,
                                const TextFolding& folding)
{
    const std::u16string folded = folding.lower(fileName);
    std::u16string otherCase;
    while (!descriptions.empty()) {
        const auto [name, comment] = splitDescription(takeLine(descriptions));
        if (name == fileName)
            return cleanComment(comment);
        if (otherCase.empty() && folding.lower(name) == folded)
            otherCase = cleanComment(comment);
    }
    return otherCase;
}

}  // namespace kelvane
