#include "text/html_entities.h"

#include <algorithm>
#include <array>
#include <string>

#include "text/collapsed_text.h"

namespace kelvane {
namespace {

struct Entity {
    std::string_view name;
    char16_t character;
};

// The character entities of HTML 4.01 (section 24), and those of the HTML standard that texts use. In the order of
// their bytes.
constexpr auto entities = std::to_array<Entity>(
    {{"AElig", 0xC6},     {"Aacute", 0xC1},    {"Abreve", 0x102},  {"Acirc", 0xC2},    {"Agrave", 0xC0},
     {"Alpha", 0x391},    {"Aogon", 0x104},    {"Aring", 0xC5},    {"Atilde", 0xC3},   {"Auml", 0xC4},
     {"Beta", 0x392},     {"Cacute", 0x106},   {"Ccaron", 0x10C},  {"Ccedil", 0xC7},   {"Chi", 0x3A7},
     {"Dagger", 0x2021},  {"Dcaron", 0x10E},   {"Delta", 0x394},   {"Dstrok", 0x110},  {"ETH", 0xD0},
     {"Eacute", 0xC9},    {"Ecaron", 0x11A},   {"Ecirc", 0xCA},    {"Egrave", 0xC8},   {"Eogon", 0x118},
     {"Epsilon", 0x395},  {"Eta", 0x397},      {"Euml", 0xCB},     {"Gamma", 0x393},   {"Gbreve", 0x11E},
     {"Iacute", 0xCD},    {"Icirc", 0xCE},     {"Idot", 0x130},    {"Igrave", 0xCC},   {"Iota", 0x399},
     {"Iuml", 0xCF},      {"Kappa", 0x39A},    {"Lambda", 0x39B},  {"Lstrok", 0x141},  {"Mu", 0x39C},
     {"Nacute", 0x143},   {"Ncaron", 0x147},   {"NewLine", 0xA},   {"Ntilde", 0xD1},   {"Nu", 0x39D},
     {"OElig", 0x152},    {"Oacute", 0xD3},    {"Ocirc", 0xD4},    {"Odblac", 0x150},  {"Ograve", 0xD2},
     {"Omega", 0x3A9},    {"Omicron", 0x39F},  {"Oslash", 0xD8},   {"Otilde", 0xD5},   {"Ouml", 0xD6},
     {"Phi", 0x3A6},      {"Pi", 0x3A0},       {"Prime", 0x2033},  {"Psi", 0x3A8},     {"Rcaron", 0x158},
     {"Rho", 0x3A1},      {"Sacute", 0x15A},   {"Scaron", 0x160},  {"Scedil", 0x15E},  {"Sigma", 0x3A3},
     {"THORN", 0xDE},     {"Tab", 0x9},        {"Tau", 0x3A4},     {"Tcedil", 0x162},  {"Theta", 0x398},
     {"Uacute", 0xDA},    {"Ucirc", 0xDB},     {"Udblac", 0x170},  {"Ugrave", 0xD9},   {"Upsilon", 0x3A5},
     {"Uring", 0x16E},    {"Uuml", 0xDC},      {"Xi", 0x39E},      {"Yacute", 0xDD},   {"Yuml", 0x178},
     {"Zacute", 0x179},   {"Zcaron", 0x17D},   {"Zdot", 0x17B},    {"Zeta", 0x396},    {"aacute", 0xE1},
     {"abreve", 0x103},   {"acirc", 0xE2},     {"acute", 0xB4},    {"aelig", 0xE6},    {"agrave", 0xE0},
     {"alefsym", 0x2135}, {"alpha", 0x3B1},    {"amacr", 0x101},   {"amp", 0x26},      {"and", 0x2227},
     {"ang", 0x2220},     {"aogon", 0x105},    {"apos", 0x27},     {"aring", 0xE5},    {"ast", 0x2A},
     {"asymp", 0x2248},   {"atilde", 0xE3},    {"auml", 0xE4},     {"bdquo", 0x201E},  {"beta", 0x3B2},
     {"brvbar", 0xA6},    {"bsol", 0x5C},      {"bull", 0x2022},   {"cacute", 0x107},  {"cap", 0x2229},
     {"ccaron", 0x10D},   {"ccedil", 0xE7},    {"cedil", 0xB8},    {"cent", 0xA2},     {"check", 0x2713},
     {"chi", 0x3C7},      {"circ", 0x2C6},     {"clubs", 0x2663},  {"colon", 0x3A},    {"comma", 0x2C},
     {"commat", 0x40},    {"cong", 0x2245},    {"copy", 0xA9},     {"copysr", 0x2117}, {"crarr", 0x21B5},
     {"cup", 0x222A},     {"curren", 0xA4},    {"dArr", 0x21D3},   {"dagger", 0x2020}, {"darr", 0x2193},
     {"dash", 0x2010},    {"dcaron", 0x10F},   {"deg", 0xB0},      {"delta", 0x3B4},   {"diams", 0x2666},
     {"divide", 0xF7},    {"dollar", 0x24},    {"dstrok", 0x111},  {"eacute", 0xE9},   {"ecaron", 0x11B},
     {"ecirc", 0xEA},     {"egrave", 0xE8},    {"emacr", 0x113},   {"empty", 0x2205},  {"emsp", 0x2003},
     {"ensp", 0x2002},    {"eogon", 0x119},    {"epsilon", 0x3B5}, {"equals", 0x3D},   {"equiv", 0x2261},
     {"eta", 0x3B7},      {"eth", 0xF0},       {"euml", 0xEB},     {"euro", 0x20AC},   {"excl", 0x21},
     {"exist", 0x2203},   {"fnof", 0x192},     {"forall", 0x2200}, {"frac12", 0xBD},   {"frac14", 0xBC},
     {"frac34", 0xBE},    {"frasl", 0x2044},   {"gamma", 0x3B3},   {"gbreve", 0x11F},  {"ge", 0x2265},
     {"grave", 0x60},     {"gt", 0x3E},        {"hArr", 0x21D4},   {"hairsp", 0x200A}, {"harr", 0x2194},
     {"hearts", 0x2665},  {"hellip", 0x2026},  {"hyphen", 0x2010}, {"iacute", 0xED},   {"icirc", 0xEE},
     {"iexcl", 0xA1},     {"igrave", 0xEC},    {"imacr", 0x12B},   {"image", 0x2111},  {"infin", 0x221E},
     {"inodot", 0x131},   {"int", 0x222B},     {"iota", 0x3B9},    {"iquest", 0xBF},   {"isin", 0x2208},
     {"iuml", 0xEF},      {"kappa", 0x3BA},    {"lArr", 0x21D0},   {"lambda", 0x3BB},  {"lang", 0x2329},
     {"laquo", 0xAB},     {"larr", 0x2190},    {"lbrack", 0x5B},   {"lceil", 0x2308},  {"lcub", 0x7B},
     {"ldquo", 0x201C},   {"le", 0x2264},      {"lfloor", 0x230A}, {"lowast", 0x2217}, {"lowbar", 0x5F},
     {"loz", 0x25CA},     {"lpar", 0x28},      {"lrm", 0x200E},    {"lsaquo", 0x2039}, {"lsquo", 0x2018},
     {"lstrok", 0x142},   {"lt", 0x3C},        {"macr", 0xAF},     {"mdash", 0x2014},  {"micro", 0xB5},
     {"middot", 0xB7},    {"minus", 0x2212},   {"mu", 0x3BC},      {"nabla", 0x2207},  {"nacute", 0x144},
     {"nbsp", 0xA0},      {"ncaron", 0x148},   {"ndash", 0x2013},  {"ne", 0x2260},     {"ni", 0x220B},
     {"not", 0xAC},       {"notin", 0x2209},   {"nsub", 0x2284},   {"ntilde", 0xF1},   {"nu", 0x3BD},
     {"num", 0x23},       {"numsp", 0x2007},   {"oacute", 0xF3},   {"ocirc", 0xF4},    {"odblac", 0x151},
     {"oelig", 0x153},    {"ograve", 0xF2},    {"oline", 0x203E},  {"omacr", 0x14D},   {"omega", 0x3C9},
     {"omicron", 0x3BF},  {"oplus", 0x2295},   {"or", 0x2228},     {"ordf", 0xAA},     {"ordm", 0xBA},
     {"oslash", 0xF8},    {"otilde", 0xF5},    {"otimes", 0x2297}, {"ouml", 0xF6},     {"para", 0xB6},
     {"part", 0x2202},    {"percnt", 0x25},    {"period", 0x2E},   {"permil", 0x2030}, {"perp", 0x22A5},
     {"phi", 0x3C6},      {"phone", 0x260E},   {"pi", 0x3C0},      {"piv", 0x3D6},     {"plus", 0x2B},
     {"plusmn", 0xB1},    {"pound", 0xA3},     {"prime", 0x2032},  {"prod", 0x220F},   {"prop", 0x221D},
     {"psi", 0x3C8},      {"puncsp", 0x2008},  {"quest", 0x3F},    {"quot", 0x22},     {"rArr", 0x21D2},
     {"radic", 0x221A},   {"rang", 0x232A},    {"raquo", 0xBB},    {"rarr", 0x2192},   {"rbrack", 0x5D},
     {"rcaron", 0x159},   {"rceil", 0x2309},   {"rcub", 0x7D},     {"rdquo", 0x201D},  {"real", 0x211C},
     {"reg", 0xAE},       {"rfloor", 0x230B},  {"rho", 0x3C1},     {"rlm", 0x200F},    {"rpar", 0x29},
     {"rsaquo", 0x203A},  {"rsquo", 0x2019},   {"sacute", 0x15B},  {"sbquo", 0x201A},  {"scaron", 0x161},
     {"scedil", 0x15F},   {"sdot", 0x22C5},    {"sect", 0xA7},     {"semi", 0x3B},     {"shy", 0xAD},
     {"sigma", 0x3C3},    {"sigmaf", 0x3C2},   {"sim", 0x223C},    {"sol", 0x2F},      {"spades", 0x2660},
     {"star", 0x2606},    {"starf", 0x2605},   {"sub", 0x2282},    {"sube", 0x2286},   {"sum", 0x2211},
     {"sup", 0x2283},     {"sup1", 0xB9},      {"sup2", 0xB2},     {"sup3", 0xB3},     {"supe", 0x2287},
     {"szlig", 0xDF},     {"tau", 0x3C4},      {"tcaron", 0x165},  {"tcedil", 0x163},  {"there4", 0x2234},
     {"theta", 0x3B8},    {"thetasym", 0x3D1}, {"thinsp", 0x2009}, {"thorn", 0xFE},    {"tilde", 0x2DC},
     {"times", 0xD7},     {"trade", 0x2122},   {"uArr", 0x21D1},   {"uacute", 0xFA},   {"uarr", 0x2191},
     {"ucirc", 0xFB},     {"udblac", 0x171},   {"ugrave", 0xF9},   {"umacr", 0x16B},   {"uml", 0xA8},
     {"upsih", 0x3D2},    {"upsilon", 0x3C5},  {"uring", 0x16F},   {"uuml", 0xFC},     {"vert", 0x7C},
     {"weierp", 0x2118},  {"xi", 0x3BE},       {"yacute", 0xFD},   {"yen", 0xA5},      {"yuml", 0xFF},
     {"zacute", 0x17A},   {"zcaron", 0x17E},   {"zdot", 0x17C},    {"zeta", 0x3B6},    {"zwj", 0x200D},
     {"zwnj", 0x200C}});

// Windows' characters where ISO 8859-1 has controls: what such references mean by the HTML standard ("Numeric character
// reference end state").
constexpr std::u16string_view windowsCharacters =
    u"\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u008D\u017D\u008F"
    u"\u0090\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u009D\u017E\u0178";

constexpr std::size_t longestEntity = 8;
constexpr char32_t replacement = 0xFFFD;

constexpr bool isDigit(char16_t unit)
{
    return unit >= u'0' && unit <= u'9';
}

// 16 for what is no digit at all.
constexpr unsigned digitOf(char16_t unit)
{
    if (isDigit(unit))
        return unit - u'0';
    const char16_t lower = unit | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10u : 16u;
}

const Entity* entityOf(std::string_view name)
{
    const auto found =
        std::lower_bound(entities.begin(), entities.end(), name,
                         [](const Entity& entity, std::string_view wanted) { return entity.name < wanted; });
    return found != entities.end() && found->name == name ? &*found : nullptr;
}

// These may come without a semicolon, even with letters behind them.
bool standsAlone(const Entity& entity)
{
    return entity.character <= 0xFF && (entity.character >= 0xA0 || entity.name == "amp" || entity.name == "lt" ||
                                        entity.name == "gt" || entity.name == "quot");
}

char32_t referred(char32_t number)
{
    if (number >= 0x80 && number < 0xA0)
        return windowsCharacters[number - 0x80];
    if (number == 0 || number > 0x10FFFF || (number >= 0xD800 && number < 0xE000))
        return replacement;
    return number;
}

CharacterReference numericReference(std::u16string_view text)
{
    const bool hexadecimal = text.size() > 2 && (text[2] | 0x20) == u'x';
    const unsigned base = hexadecimal ? 16 : 10;
    const std::size_t first = hexadecimal ? 3 : 2;
    std::size_t at = first;
    char32_t number = 0;
    for (; at < text.size() && digitOf(text[at]) < base; ++at)
        number = std::min<char32_t>(number * base + digitOf(text[at]), 0x110000);
    if (at == first)
        return {};
    return {referred(number), at + (at < text.size() && text[at] == u';' ? 1 : 0)};
}

CharacterReference namedReference(std::u16string_view text)
{
    std::string name;
    while (name.size() < longestEntity && name.size() + 1 < text.size() &&
           (isMarkupLetter(text[name.size() + 1]) || isDigit(text[name.size() + 1])))
        name += static_cast<char>(text[name.size() + 1]);
    const bool closed = name.size() + 1 < text.size() && text[name.size() + 1] == u';';
    if (const Entity* entity = entityOf(name); entity != nullptr && closed)
        return {entity->character, name.size() + 2};
    for (; !name.empty(); name.pop_back()) {
        if (const Entity* entity = entityOf(name); entity != nullptr && standsAlone(*entity))
            return {entity->character, name.size() + 1};
    }
    return {};
}

}  // namespace

CharacterReference characterReference(std::u16string_view text)
{
    return text.size() > 1 && text[1] == u'#' ? numericReference(text) : namedReference(text);
}

}  // namespace kelvane
