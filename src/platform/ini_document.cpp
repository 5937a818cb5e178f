#include "platform/ini_document.h"

#include <algorithm>
#include <cassert>
#include <unordered_set>
#include <utility>

#include "platform/ini_values.h"

namespace kelvane {
namespace {

constexpr std::u16string_view lineBreaks = u"\r\n";

// Up to and with its line end.
std::u16string_view firstLine(std::u16string_view text)
{
    const std::size_t end = text.find_first_of(lineBreaks);
    if (end == std::u16string_view::npos)
        return text;
    return text.substr(0, end + (text.substr(end).starts_with(lineBreaks) ? 2 : 1));
}

std::u16string_view lineEndOf(std::u16string_view line)
{
    return line.substr(std::min(line.find_first_of(lineBreaks), line.size()));
}

std::optional<std::u16string_view> sectionNameOf(std::u16string_view line)
{
    line = trimIniBlanks(line);
    const std::size_t end = line.find(u']');
    if (!line.starts_with(u'[') || end == std::u16string_view::npos)
        return std::nullopt;
    return trimIniBlanks(line.substr(1, end - 1));
}

// Empty for comments, section lines and lines without "=".
std::u16string_view keyNameOf(std::u16string_view line)
{
    line = trimIniBlanks(line);
    const std::size_t end = line.find(u'=');
    if (end == std::u16string_view::npos || line.starts_with(u';') || line.starts_with(u'['))
        return {};
    return trimIniBlanks(line.substr(0, end));
}

std::u16string_view valueOf(std::u16string_view line)
{
    return line.substr(line.find(u'=') + 1);
}

bool isPlain(std::u16string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char16_t unit) { return unit < 0x80; });
}

Error tooMuch(const char* what)
{
    return {ErrorKind::invalid, 0, what};
}

}  // namespace

Result<IniDocument> IniDocument::parse(std::span<const std::byte> bytes, const TextFolding& folding)
{
    if (bytes.size() > mostBytes)
        return tooMuch("it is far too large for settings");
    const Result<IniText> decoded = decodeIni(bytes);
    if (!decoded)
        return decoded.error();
    IniDocument document(folding);
    document.encoding_ = decoded->encoding;
    std::u16string_view rest = decoded->text;
    if (const std::u16string_view end = lineEndOf(firstLine(rest)); !end.empty())
        document.lineEnd_ = end;
    for (std::size_t lines = 0; !rest.empty(); ++lines) {
        if (lines == mostLines)
            return tooMuch("it has far too many lines for settings");
        const std::u16string_view line = firstLine(rest);
        document.addLine(line);
        rest.remove_prefix(line.size());
    }
    return document;
}

std::vector<std::byte> IniDocument::serialise() const
{
    std::u16string all;
    for (const Section& section : sections_) {
        for (const Line& line : section.lines)
            all += line.text;
    }
    return encodeIni(all, encoding_);
}

bool IniDocument::hasSection(std::u16string_view section) const
{
    return sectionAt(section).has_value();
}

std::vector<std::u16string> IniDocument::sectionNames() const
{
    std::vector<std::u16string> names;
    std::unordered_set<std::u16string_view> seen = {u""};
    for (const Section& section : sections_) {
        if (seen.insert(section.folded).second)
            names.push_back(section.name);
    }
    return names;
}

std::vector<std::u16string> IniDocument::keyNames(std::u16string_view section) const
{
    std::vector<std::u16string> names;
    const std::optional<std::size_t> at = sectionAt(section);
    if (!at)
        return names;
    std::unordered_set<std::u16string_view> seen = {u""};
    for (const Line& line : sections_[*at].lines) {
        if (seen.insert(line.key).second)
            names.emplace_back(keyNameOf(line.text));
    }
    return names;
}

std::optional<std::u16string> IniDocument::text(std::u16string_view section, std::u16string_view key) const
{
    const std::optional<std::size_t> at = sectionAt(section);
    if (!at)
        return std::nullopt;
    const std::optional<std::size_t> line = lineAt(sections_[*at], folded(key));
    if (!line)
        return std::nullopt;
    return textFromIniLine(valueOf(sections_[*at].lines[*line].text));
}

void IniDocument::setText(std::u16string_view section, std::u16string_view key, std::u16string_view text)
{
    assert(key == iniValueName(key) && section == iniSectionName(section));
    Section& owner = made(section);
    const std::optional<std::size_t> at = lineAt(owner, folded(key));
    if (!at) {
        insert(owner, std::u16string(key) + u'=' + iniTextLine(text) + lineEnd_);
        return;
    }
    std::u16string& line = owner.lines[*at].text;
    if (textFromIniLine(valueOf(line)) != text)
        line = line.substr(0, line.find(u'=') + 1) + iniTextLine(text) + std::u16string(lineEndOf(line));
}

bool IniDocument::remove(std::u16string_view section, std::u16string_view key)
{
    const std::optional<std::size_t> at = sectionAt(section);
    const std::u16string name = folded(key);
    if (!at || name.empty())
        return false;
    return std::erase_if(sections_[*at].lines, [&](const Line& line) { return line.key == name; }) > 0;
}

bool IniDocument::removeSection(std::u16string_view section)
{
    const std::u16string name = folded(section);
    if (!name.empty())
        return std::erase_if(sections_, [&](const Section& each) { return each.folded == name; }) > 0;
    return std::erase_if(sections_.front().lines, [](const Line& line) { return !line.key.empty(); }) > 0;
}

// Most names are plain, and for those the whole of Unicode need not be asked.
std::u16string IniDocument::folded(std::u16string_view name) const
{
    if (!isPlain(name))
        return folding_->lower(name);
    std::u16string lower(name);
    for (char16_t& unit : lower)
        unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    return lower;
}

IniDocument::Line IniDocument::lineOf(std::u16string_view text) const
{
    return {std::u16string(text), folded(keyNameOf(text))};
}

void IniDocument::addLine(std::u16string_view text)
{
    if (const auto name = sectionNameOf(text))
        sections_.push_back({std::u16string(*name), folded(*name), {}});
    sections_.back().lines.push_back(lineOf(text));
}

std::optional<std::size_t> IniDocument::sectionAt(std::u16string_view section) const
{
    const auto found = std::find_if(sections_.begin(), sections_.end(),
                                    [name = folded(section)](const Section& each) { return each.folded == name; });
    return found == sections_.end() ? std::nullopt : std::optional<std::size_t>(found - sections_.begin());
}

IniDocument::Section& IniDocument::made(std::u16string_view section)
{
    if (const std::optional<std::size_t> at = sectionAt(section))
        return sections_[*at];
    endLastLine();
    addLine(u'[' + std::u16string(section) + u']' + lineEnd_);
    return sections_.back();
}

std::optional<std::size_t> IniDocument::lineAt(const Section& section, std::u16string_view folded)
{
    const auto found = std::find_if(section.lines.begin(), section.lines.end(),
                                    [&](const Line& line) { return !line.key.empty() && line.key == folded; });
    return found == section.lines.end() ? std::nullopt : std::optional<std::size_t>(found - section.lines.begin());
}

void IniDocument::insert(Section& section, std::u16string_view text)
{
    endLastLine();
    auto at = section.lines.end();
    while (at != section.lines.begin() && trimIniBlanks(std::prev(at)->text).empty())
        --at;
    section.lines.insert(at, lineOf(text));
}

// The last line of a file may lack its end; only then can something be put behind it.
void IniDocument::endLastLine()
{
    std::vector<Line>& lines = sections_.back().lines;
    if (!lines.empty() && lineEndOf(lines.back().text).empty())
        lines.back().text += lineEnd_;
}

}  // namespace kelvane
