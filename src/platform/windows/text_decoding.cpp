#include "platform/text_decoding.h"

#include <algorithm>
#include <limits>
#include <windows.h>

#include "base/utf.h"
#include "platform/windows/code_pages.h"
#include "platform/windows/os_error.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::codePageName;
using windows_os::codePageOf;

// The system counts in 32 bits; texts are cut long before.
constexpr std::size_t longest = std::numeric_limits<int>::max() / 4;

std::u16string fromUtf16(std::span<const std::byte> bytes, bool bigEndian)
{
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto first = std::to_integer<unsigned>(bytes[2 * i]),
                   second = std::to_integer<unsigned>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

// A pair that is torn at the end is left out, as is half a character of any other charset.
std::u16string wellFormed(std::u16string text)
{
    const auto isLead = [](char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
    const auto isTrail = [](char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
    if (!text.empty() && isLead(text.back()))
        text.pop_back();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isLead(text[i]) && isTrail(text[i + 1]))
            ++i;
        else if (isLead(text[i]) || isTrail(text[i]))
            text[i] = u'\uFFFD';
    }
    return text;
}

// How many bytes make up whole characters: in the code pages with two bytes a character the last lead byte may stand
// alone.
std::size_t wholeCharacters(std::string_view bytes, unsigned codePage)
{
    CPINFO info{};
    if (::GetCPInfo(codePage, &info) == FALSE || info.MaxCharSize != 2)
        return bytes.size();
    std::size_t at = 0;
    while (at < bytes.size())
        at += ::IsDBCSLeadByteEx(codePage, static_cast<BYTE>(bytes[at])) != FALSE ? 2u : 1u;
    return at > bytes.size() ? bytes.size() - 1 : bytes.size();
}

Result<std::u16string> fromCodePage(std::string_view bytes, unsigned codePage)
{
    bytes = bytes.substr(0, wholeCharacters(bytes, codePage));
    if (bytes.empty())
        return std::u16string();
    const int length = static_cast<int>(bytes.size());
    const int needed = ::MultiByteToWideChar(codePage, 0, bytes.data(), length, nullptr, 0);
    if (needed <= 0)
        return windows_os::lastError();
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    if (::MultiByteToWideChar(codePage, 0, bytes.data(), length, wide.data(), needed) != needed)
        return windows_os::lastError();
    return windows_os::fromWide(wide);
}

// UTF-8 by our own decoder, which answers alike on every system.
std::u16string fromUtf8(std::string_view bytes)
{
    std::size_t cut = bytes.size();
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
        const auto unit = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if (unit < 0x80)
            break;
        if (unit < 0xC0)
            continue;
        const std::size_t needed = unit >= 0xF0 ? 4 : unit >= 0xE0 ? 3 : 2;
        cut = needed > back ? bytes.size() - back : bytes.size();
        break;
    }
    return toUtf16(bytes.substr(0, cut));
}

class SystemDecoding final : public TextDecoding {
public:
    Result<std::u16string> decode(std::span<const std::byte> bytes, std::string_view charset) const override
    {
        const auto codePage = codePageOf(charset);
        if (!codePage)
            return Error{ErrorKind::notFound, 0, "unknown charset"};
        auto text = decodeAs(*codePage, bytes.first(std::min(bytes.size(), longest)));
        if (text && text->starts_with(u'\uFEFF'))
            text->erase(0, 1);
        return text;
    }

    // What comes of bytes that anybody wrote on such a system.
    std::optional<std::string> guess(std::span<const std::byte> bytes) const override
    {
        const bool binary = std::find(bytes.begin(), bytes.end(), std::byte{0}) != bytes.end();
        return binary || bytes.empty() ? std::nullopt : codePageName(::GetACP());
    }

private:
    static Result<std::u16string> decodeAs(unsigned codePage, std::span<const std::byte> bytes)
    {
        const std::string_view narrow(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        switch (codePage) {
        case windows_os::utf16LittleEndian:
        case windows_os::utf16BigEndian:
            return wellFormed(fromUtf16(bytes, codePage == windows_os::utf16BigEndian));
        case CP_UTF8:
            return fromUtf8(narrow);
        default:
            return fromCodePage(narrow, codePage);
        }
    }
};

}  // namespace

std::unique_ptr<TextDecoding> makeTextDecoding()
{
    return std::make_unique<SystemDecoding>();
}

}  // namespace kelvane
