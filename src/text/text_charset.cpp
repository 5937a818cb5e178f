#include "text/text_charset.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "base/utf.h"
#include "base/words.h"
#include "text/html_tokens.h"

namespace kelvane {
namespace {

constexpr std::string_view lastResort = "windows-1252";

struct ByteOrderMark {
    std::string_view bytes;
    std::string_view charset;
};
// The mark of UTF-32LE begins with the one of UTF-16LE.
constexpr std::array byteOrderMarks = {
    ByteOrderMark{{"\xFF\xFE\0\0", 4}, "utf-32le"}, ByteOrderMark{{"\0\0\xFE\xFF", 4}, "utf-32be"},
    ByteOrderMark{"\xFF\xFE", "utf-16le"},          ByteOrderMark{"\xFE\xFF", "utf-16be"},
    ByteOrderMark{"\xEF\xBB\xBF", "utf-8"},         ByteOrderMark{"\x84\x31\x95\x33", "gb18030"},
};

struct Superset {
    std::string_view label;
    std::string_view charset;
};
constexpr std::array supersets = {
    Superset{"ascii", "us-ascii"},

    Superset{"iso-8859-1", "windows-1252"},
    Superset{"iso8859-1", "windows-1252"},
    Superset{"iso_8859-1", "windows-1252"},
    Superset{"latin1", "windows-1252"},
    Superset{"iso-8859-9", "windows-1254"},
    Superset{"iso-8859-11", "windows-874"},
    Superset{"tis-620", "windows-874"},
    Superset{"gb2312", "gb18030"},
    Superset{"gb_2312-80", "gb18030"},
    Superset{"x-gbk", "gb18030"},
    Superset{"gbk", "gb18030"},
    Superset{"euc-kr", "windows-949"},
    Superset{"ks_c_5601-1987", "windows-949"},
    Superset{"x-sjis", "shift_jis"},
    Superset{"utf8", "utf-8"},
    Superset{"unicode", "utf-16le"},
    Superset{"ansi_x3.4-1968", "us-ascii"},
};

// The bytes without a UTF-8 character that they end within.
std::string_view withoutCutCharacter(std::string_view bytes)
{
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if ((byte & 0xC0) == 0x80)
            continue;
        const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length > back ? bytes.substr(0, bytes.size() - back) : bytes;
    }
    return bytes;
}

bool isRareControl(char16_t unit)
{
    // Escape, backspace and the old mark of a file's end do occur in logs and texts.
    constexpr std::u16string_view usual = u"\t\n\v\f\r\b\x1A\x1B";
    return unit < 0x20 && usual.find(unit) == std::u16string_view::npos;
}

struct WideCounts {
    std::size_t units = 0;
    std::size_t latin = 0;   // below U+0100
    std::size_t blanks = 0;  // blanks and line ends
};

// What the bytes are as UTF-16; nothing where no text looks so.
std::optional<WideCounts> countUtf16(std::string_view bytes, bool bigEndian)
{
    WideCounts counts;
    bool paired = true;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]), second = static_cast<unsigned char>(bytes[i + 1]);
        const auto unit = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
        const bool low = (unit & 0xFC00) == 0xDC00;
        if (isRareControl(unit) || unit >= 0xFFFE || low == paired || unit == 0x7F)
            return std::nullopt;
        paired = (unit & 0xFC00) != 0xD800;
        ++counts.units;
        counts.latin += unit < 0x100;
        counts.blanks += unit == u' ' || unit == u'\n';
    }
    return counts;
}

// UTF-16 without a mark: the zero bytes of its blanks, or of its Latin letters, stand on one side only.
std::string_view unmarkedUtf16(std::string_view bytes)
{
    constexpr std::size_t enough = 1u << 16;
    bytes = bytes.substr(0, enough);
    if (bytes.find('\0') == std::string_view::npos)
        return {};
    for (const bool bigEndian : {false, true}) {
        const auto counts = countUtf16(bytes, bigEndian);
        if (counts && counts->units >= 2 &&
            (counts->latin * 2 >= counts->units || counts->blanks * 50 >= counts->units))
            return bigEndian ? "utf-16be" : "utf-16le";
    }
    return {};
}

std::u16string utf16Of(std::string_view bytes, bool bigEndian)
{
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]), second = static_cast<unsigned char>(bytes[i + 1]);
        text += static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    if (text.starts_with(u'\uFEFF'))
        text.erase(0, 1);
    return text;
}

std::u16string utf32Of(std::string_view bytes, bool bigEndian)
{
    std::u16string text;
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
        char32_t character = 0;
        for (std::size_t at = 0; at < 4; ++at)
            character = character << 8 | static_cast<unsigned char>(bytes[i + (bigEndian ? at : 3 - at)]);
        const bool surrogate = character >= 0xD800 && character < 0xE000;
        appendCharacter(text, surrogate || character > 0x10FFFF ? 0xFFFD : character);
    }
    if (text.starts_with(u'\uFEFF'))
        text.erase(0, 1);
    return text;
}

std::u16string utf8Text(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return toUtf16(withoutCutCharacter(bytes));
}

// Lone surrogates stay as they are, so that two different files never give one text.
std::optional<std::u16string> decodeAs(std::string_view bytes, const std::string& charset, const TextDecoding& decoding)
{
    if (charset == "utf-8")
        return utf8Text(bytes);
    if (charset == "utf-16le" || charset == "utf-16be" || charset == "utf-16")
        return utf16Of(bytes, charset == "utf-16be");
    if (charset == "utf-32le" || charset == "utf-32be")
        return utf32Of(bytes, charset == "utf-32be");
    auto text = decoding.decode(asBytes(bytes), charset);
    return text ? std::optional(std::move(*text)) : std::nullopt;
}

// Who declares UTF-16 in a document that can be read byte by byte is wrong, and one that is right is recognised anyway.
// ASCII is what programs declare that did not look; it is right where UTF-8 is.
std::string declaredCharset(std::string_view declared)
{
    std::string charset = usualCharset(declared);
    const bool untold = charset.starts_with("utf-16") || charset.starts_with("utf-32") || charset == "us-ascii";
    return untold ? std::string() : charset;
}

// A short text that ends with its only byte beyond ASCII is a word with an accent at its end, not a cut one.
bool looksLikeUtf8(std::string_view bytes)
{
    constexpr std::size_t longEnough = 4096;
    const std::string_view whole = withoutCutCharacter(bytes);
    const bool ascii = std::all_of(whole.begin(), whole.end(), [](char byte) { return (byte & 0x80) == 0; });
    return isValidUtf8(whole) && (whole.size() == bytes.size() || bytes.size() >= longEnough || !ascii);
}

bool holdsUtf8Character(std::string_view bytes)
{
    const std::u16string text = toUtf16(bytes);
    return std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80 && unit != 0xFFFD; });
}

std::string undeclaredCharset(std::string_view bytes, const TextDecoding& decoding)
{
    if (const std::string_view wide = unmarkedUtf16(bytes); !wide.empty())
        return std::string(wide);
    const bool shiftsSets = bytes.find("\x1B$") != std::string_view::npos;  // ISO 2022 is made of ASCII alone
    const bool utf8 = looksLikeUtf8(bytes);
    if (utf8 && !shiftsSets)
        return "utf-8";
    const auto guess = decoding.guess(asBytes(bytes));
    if (utf8)
        return guess && guess->starts_with("ISO-2022") ? *guess : "utf-8";
    const std::string likely = guess ? usualCharset(*guess) : std::string(lastResort);
    return likely == "utf-8" && !holdsUtf8Character(bytes) ? std::string(lastResort) : likely;
}

// The text where nothing decodes it: its bytes as the first characters of Unicode.
std::u16string widened(std::string_view bytes)
{
    std::u16string text;
    text.reserve(bytes.size());
    for (const char byte : bytes)
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    return text;
}

}  // namespace

std::string_view markedCharset(std::span<const std::byte> bytes)
{
    for (const ByteOrderMark& mark : byteOrderMarks) {
        if (asCharacters(bytes).starts_with(mark.bytes))
            return mark.charset;
    }
    return {};
}

std::string usualCharset(std::string_view declared)
{
    const std::string label = asciiLower(declared);
    const auto row = std::find_if(supersets.begin(), supersets.end(),
                                  [&label](const Superset& superset) { return superset.label == label; });
    return row != supersets.end() ? std::string(row->charset) : label;
}

DecodedText decodeText(std::span<const std::byte> bytes, const TextDecoding& decoding, std::string_view declared)
{
    const std::string_view characters = asCharacters(bytes);
    const std::string marked(markedCharset(bytes));
    const std::array choices = {marked,
                                declared.empty() || !marked.empty() ? std::string() : declaredCharset(declared)};
    for (const std::string& charset : choices) {
        if (charset.empty())
            continue;
        if (auto text = decodeAs(characters, charset, decoding))
            return {std::move(*text), charset};
    }
    std::string charset = undeclaredCharset(characters, decoding);
    if (auto text = decodeAs(characters, charset, decoding))
        return {std::move(*text), std::move(charset)};
    if (auto text = decodeAs(characters, std::string(lastResort), decoding))
        return {std::move(*text), std::string(lastResort)};
    return {widened(characters), "iso-8859-1"};
}

bool looksLikeText(std::span<const std::byte> head)
{
    const std::string_view characters = asCharacters(head);
    if (characters.empty())
        return false;
    if (!markedCharset(head).empty() || !unmarkedUtf16(characters).empty())
        return true;
    std::size_t rare = 0;
    for (const char byte : characters) {
        if (byte == '\0')
            return false;
        rare += isRareControl(static_cast<unsigned char>(byte));
    }
    return rare * 100 <= characters.size();
}

}  // namespace kelvane
