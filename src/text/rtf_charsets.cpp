#include "text/rtf_charsets.h"

#include <algorithm>
#include <array>

namespace kelvane {
namespace {

struct FontCharset {
    int charset;
    int codePage;
};
// Rich Text Format Specification 1.9.1, "Font Table".
constexpr auto fontCharsets = std::to_array<FontCharset>({
    {77, 10000}, {78, 932},   {79, 949},   {80, 936},   {81, 950},   {128, 932},  {129, 949},
    {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255},
    {178, 1256}, {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
});

}  // namespace

int codePageOfFontCharset(int charset)
{
    const auto row = std::find_if(fontCharsets.begin(), fontCharsets.end(),
                                  [charset](const FontCharset& each) { return each.charset == charset; });
    return row != fontCharsets.end() ? row->codePage : 0;
}

std::string charsetOfCodePage(int codePage)
{
    switch (codePage) {
    case 932:
        return "shift_jis";
    case 936:
        return "gb18030";
    case 950:
        return "big5";
    case 1361:
        return "johab";
    case 10000:
        return "macintosh";
    case 65001:
        return "utf-8";
    default:
        break;
    }
    const bool windows = codePage == 874 || codePage == 949 || (codePage >= 1250 && codePage <= 1258);
    return (windows ? "windows-" : "cp") + std::to_string(codePage);
}

}  // namespace kelvane
