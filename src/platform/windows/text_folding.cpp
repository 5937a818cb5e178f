#include "platform/text_folding.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>
#include <windows.h>

#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::fromWide;
using windows_os::toWide;

// The system counts in 32 bits and may need several times the room.
constexpr std::size_t longest = std::numeric_limits<int>::max() / 32;

// The system folds the case of the basic plane only. Beyond it capitals stand in runs, each in a fixed distance before
// its small letters (Unicode Character Database, UnicodeData.txt).
struct CapitalRun {
    char32_t first;
    char32_t last;
    char32_t distance;
};
constexpr std::array capitalRuns = {CapitalRun{0x10400, 0x10427, 40}, CapitalRun{0x104B0, 0x104D3, 40},
                                    CapitalRun{0x10570, 0x1057A, 39}, CapitalRun{0x1057C, 0x1058A, 39},
                                    CapitalRun{0x1058C, 0x10592, 39}, CapitalRun{0x10594, 0x10595, 39},
                                    CapitalRun{0x10C80, 0x10CB2, 64}, CapitalRun{0x118A0, 0x118BF, 32},
                                    CapitalRun{0x16E40, 0x16E5F, 32}, CapitalRun{0x1E900, 0x1E921, 34}};

constexpr char16_t capitalIWithDot = 0x0130;

bool isLead(wchar_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isTrail(wchar_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

void lowerPair(wchar_t& lead, wchar_t& trail)
{
    const char32_t character = 0x10000 + ((lead - 0xD800u) << 10) + (trail - 0xDC00u);
    for (const CapitalRun& run : capitalRuns) {
        if (character < run.first || character > run.last)
            continue;
        const char32_t small = character + run.distance - 0x10000;
        lead = static_cast<wchar_t>(0xD800 + (small >> 10));
        trail = static_cast<wchar_t>(0xDC00 + (small & 0x3FF));
    }
}

// What the system leaves as it is.
void lowerTheRest(std::wstring& text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == capitalIWithDot)
            text[at] = L'i';
        else if (isLead(text[at]) && at + 1 < text.size() && isTrail(text[at + 1]))
            lowerPair(text[at], text[at + 1]);
    }
}

// The end of the well-formed text that begins there; the same place for a lone surrogate.
std::size_t wellFormedEnd(std::wstring_view text, std::size_t at)
{
    while (at < text.size()) {
        const bool pair = isLead(text[at]) && at + 1 < text.size() && isTrail(text[at + 1]);
        if (!pair && (isLead(text[at]) || isTrail(text[at])))
            break;
        at += pair ? 2 : 1;
    }
    return at;
}

// Of well-formed text; as it is when the system refuses.
std::wstring decomposed(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    std::wstring result(text.size() * 4 + 16, L'\0');
    for (int attempt = 0; attempt < 8; ++attempt) {
        const int room = static_cast<int>(result.size());
        const int filled = ::NormalizeString(NormalizationD, text.data(), length, result.data(), room);
        if (filled > 0) {
            result.resize(static_cast<std::size_t>(filled));
            return result;
        }
        if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            break;
        result.resize(result.size() * 2);
    }
    return std::wstring(text);
}

void appendWithoutMarks(std::wstring_view text, std::wstring& plain)
{
    if (text.empty())
        return;
    const std::wstring parts = decomposed(text);
    std::vector<WORD> types(parts.size());
    if (::GetStringTypeW(CT_CTYPE3, parts.data(), static_cast<int>(parts.size()), types.data()) == 0)
        types.assign(parts.size(), 0);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        // A letter with a stroke ("ø") counts as nonspacing too, but is a letter of its own.
        if ((types[i] & (C3_NONSPACING | C3_ALPHA)) != C3_NONSPACING)
            plain += parts[i];
    }
}

bool isAscii(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

class SystemFolding final : public TextFolding {
public:
    std::u16string lower(std::u16string_view text) const override
    {
        if (text.empty() || text.size() > longest)
            return std::u16string(text);
        const std::wstring given = toWide(text);
        const int length = static_cast<int>(given.size());
        std::wstring lowered(given.size(), L'\0');
        if (::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_LOWERCASE, given.data(), length, lowered.data(), length,
                            nullptr, nullptr, 0) != length)
            lowered = given;
        lowerTheRest(lowered);
        return fromWide(lowered);
    }

    // Lone surrogates, which the system would refuse the whole text for, pass between the pieces.
    std::u16string withoutAccents(std::u16string_view text) const override
    {
        if (isAscii(text) || text.size() > longest)
            return std::u16string(text);
        const std::wstring given = toWide(text);
        std::wstring plain;
        for (std::size_t at = 0; at < given.size();) {
            const std::size_t end = wellFormedEnd(given, at);
            appendWithoutMarks(std::wstring_view(given).substr(at, end - at), plain);
            if (end < given.size())
                plain += given[end];
            at = end + 1;
        }
        return fromWide(plain);
    }
};

}  // namespace

std::unique_ptr<TextFolding> makeTextFolding()
{
    return std::make_unique<SystemFolding>();
}

}  // namespace kelvane
