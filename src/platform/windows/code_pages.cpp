#include "platform/windows/code_pages.h"

#include <algorithm>
#include <charconv>

#include "base/words.h"

namespace kelvane::windows_os {
namespace {

struct Charset {
    std::string_view name;  // without "-", "_" and blanks, in lower case
    unsigned codePage;
};

// The first row of a code page gives its name.
constexpr Charset charsets[] = {
    {"utf8", 65001},
    {"unicode11utf8", 65001},
    {"utf16le", utf16LittleEndian},
    {"utf16", utf16LittleEndian},
    {"utf16be", utf16BigEndian},
    {"usascii", 20127},
    {"ascii", 20127},
    {"iso88591", 28591},
    {"latin1", 28591},
    {"l1", 28591},
    {"iso88592", 28592},
    {"latin2", 28592},
    {"iso88593", 28593},
    {"latin3", 28593},
    {"iso88594", 28594},
    {"latin4", 28594},
    {"iso88595", 28595},
    {"cyrillic", 28595},
    {"iso88596", 28596},
    {"arabic", 28596},
    {"iso88597", 28597},
    {"greek", 28597},
    {"iso88598", 28598},
    {"iso88598i", 28598},
    {"hebrew", 28598},
    {"iso88599", 28599},
    {"latin5", 28599},
    {"iso885913", 28603},
    {"iso885915", 28605},
    {"latin9", 28605},
    {"koi8r", 20866},
    {"koi8u", 21866},
    {"macintosh", 10000},
    {"xmacroman", 10000},
    {"shiftjis", 932},
    {"windows31j", 932},
    {"sjis", 932},
    {"xsjis", 932},
    {"mskanji", 932},
    {"gb2312", 936},
    {"gbk", 936},
    {"windows936", 936},
    {"gb18030", 54936},
    {"big5", 950},
    {"euckr", 51949},
    {"ksc56011987", 949},
    {"uhc", 949},
    {"eucjp", 20932},
    {"iso2022jp", 50220},
    {"iso2022kr", 50225},
    {"tis620", 874},
    {"windows874", 874},
    {"ibm437", 437},
    {"cp437", 437},
    {"ibm850", 850},
    {"ibm852", 852},
    {"ibm866", 866},
    {"hzgb2312", 52936},
    {"utf7", 65000},
};

std::string bareName(std::string_view charset)
{
    std::string name = asciiLower(charset);
    std::erase_if(name, [](char unit) { return unit == '-' || unit == '_' || unit == ' ' || unit == ':'; });
    return name;
}

// "windows1252", "cp850", "ibm866": the number is the code page.
std::optional<unsigned> numbered(std::string_view name)
{
    for (const std::string_view head : {std::string_view("windows"), std::string_view("cp"), std::string_view("ibm")}) {
        if (!name.starts_with(head))
            continue;
        const std::string_view digits = name.substr(head.size());
        unsigned number = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        const bool whole = error == std::errc() && end == digits.data() + digits.size();
        if (whole && ((number >= 1250 && number <= 1258) || (number >= 437 && number <= 950)))
            return number;
    }
    return std::nullopt;
}

}  // namespace

std::optional<unsigned> codePageOf(std::string_view charset)
{
    const std::string name = bareName(charset);
    const auto* const row = std::find_if(std::begin(charsets), std::end(charsets),
                                         [&](const Charset& known) { return known.name == name; });
    return row != std::end(charsets) ? std::optional(row->codePage) : numbered(name);
}

std::optional<std::string> codePageName(unsigned codePage)
{
    const auto* const row = std::find_if(std::begin(charsets), std::end(charsets),
                                         [&](const Charset& known) { return known.codePage == codePage; });
    if (row != std::end(charsets))
        return std::string(row->name);
    std::string name = "cp" + std::to_string(codePage);
    return numbered(name) ? std::optional(std::move(name)) : std::nullopt;
}

}  // namespace kelvane::windows_os
