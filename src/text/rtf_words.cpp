#include "text/rtf_words.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace kelvane {
namespace {

using enum RtfAction;

// Rich Text Format Specification 1.9.1, Appendix B. What a reader prints on every page, or puts in front of a list's
// items by itself, is no text of the document: other formats do not hold it either.
constexpr auto words = std::to_array<RtfWord>({
    {"aftncn", skip},
    {"aftnsep", skip},
    {"aftnsepc", skip},
    {"colortbl", skip},
    {"filetbl", skip},
    {"fldinst", skip},
    {"footer", skip},
    {"footerf", skip},
    {"footerl", skip},
    {"footerr", skip},
    {"ftncn", skip},
    {"ftnsep", skip},
    {"ftnsepc", skip},
    {"header", skip},
    {"headerf", skip},
    {"headerl", skip},
    {"headerr", skip},
    {"listtext", skip},
    {"mmathPict", skip},
    {"nonshppict", skip},
    {"objdata", skip},
    {"pict", skip},
    {"pntext", skip},
    {"pntxta", skip},
    {"pntxtb", skip},
    {"private", skip},
    {"rxe", skip},
    {"shprslt", skip},
    {"sp", skip},
    {"stylesheet", skip},
    {"tc", skip},
    {"tcn", skip},
    {"template", skip},
    {"txe", skip},
    {"xe", skip},

    {"moMath", follow},
    {"moMathPara", follow},
    {"shpinst", follow},
    {"shptxt", lineBreak},
    {"footnote", gap},

    {"par", lineBreak},
    {"line", lineBreak},
    {"softline", lineBreak},
    {"sect", lineBreak},
    {"page", lineBreak},
    {"column", lineBreak},
    {"row", lineBreak},
    {"nestrow", lineBreak},
    {"cell", gap},
    {"nestcell", gap},
    {"tab", gap},

    {"emdash", character, 0x2014},
    {"endash", character, 0x2013},
    {"emspace", character, 0x2003},
    {"enspace", character, 0x2002},
    {"qmspace", character, 0x2005},
    {"bullet", character, 0x2022},
    {"lquote", character, 0x2018},
    {"rquote", character, 0x2019},
    {"ldblquote", character, 0x201C},
    {"rdblquote", character, 0x201D},
    {"zwj", character, 0x200D},
    {"zwnj", character, 0x200C},
    {"ltrmark", character, 0x200E},
    {"rtlmark", character, 0x200F},

    {"ansi", codePage, 1252},
    {"mac", codePage, 10000},
    {"pc", codePage, 437},
    {"pca", codePage, 850},
    {"ansicpg", documentCodePage},
    {"f", font},
    {"deff", defaultFont},
    {"plain", plain},
    {"v", hidden},
    {"deleted", hidden},
    {"u", unicode},
    {"uc", unicodeSkip},
    {"bin", binary},

    {"fonttbl", fontTable},
    {"fcharset", fontCharset},
    {"cpg", fontCodePage},
    {"upr", alternatives},
    {"ud", unicodeAlternative},

    {"info", info},
    {"title", infoText, 0, "System.Title"},
    {"subject", infoText, 0, "System.Subject"},
    {"author", infoText, 0, "System.Author", true},
    {"manager", infoText, 0, "System.Document.Manager"},
    {"company", infoText, 0, "System.Company"},
    {"operator", infoText, 0, "System.Document.LastAuthor"},
    {"category", infoText, 0, "System.Category", true},
    {"keywords", infoText, 0, "System.Keywords", true},
    {"doccomm", infoText, 0, "System.Comment"},
    {"creatim", infoDate, 0, "System.Document.DateCreated"},
    {"revtim", infoDate, 0, "System.Document.DateSaved"},
    {"printim", infoDate, 0, "System.Document.DatePrinted"},
    {"yr", datePart},
    {"mo", datePart},
    {"dy", datePart},
    {"hr", datePart},
    {"min", datePart},
    {"sec", datePart},
    {"nofpages", infoNumber, 0, "System.Document.PageCount", false, VarType::int32},
    {"nofwords", infoNumber, 0, "System.Document.WordCount", false, VarType::int32},
    {"nofchars", infoNumber, 0, "System.Document.CharacterCount", false, VarType::int32},
});

std::unordered_map<std::string_view, const RtfWord*> byName()
{
    std::unordered_map<std::string_view, const RtfWord*> rows;
    for (const RtfWord& word : words)
        rows.emplace(word.name, &word);
    return rows;
}

}  // namespace

const RtfWord& rtfWord(std::string_view name)
{
    static const std::unordered_map<std::string_view, const RtfWord*> rows = byName();
    static constexpr RtfWord unknown;
    const auto row = rows.find(name);
    return row != rows.end() ? *row->second : unknown;
}

}  // namespace kelvane
