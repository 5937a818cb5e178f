#include "props/text_fold.h"

#include <algorithm>
#include <unordered_set>

namespace kelvane {
namespace {

constexpr std::u16string_view punctuation = u"/\\-.,'\":()[]{}!<>?*$%&+@#~|;_";

// White_Space of the Unicode Character Database, as far as it lies in one UTF-16 unit (all of it does).
constexpr bool isSpace(char16_t unit)
{
    return unit == u' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0x85 || unit == 0xA0 || unit == 0x1680 ||
           (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F ||
           unit == 0x3000;
}

}  // namespace

std::u16string foldText(std::u16string_view text, const TextFolding& folding)
{
    std::u16string folded = folding.withoutAccents(folding.lower(text));
    std::replace_if(
        folded.begin(), folded.end(), [](char16_t unit) { return punctuation.find(unit) != std::u16string_view::npos; },
        u' ');
    return folded;
}

std::u16string uniqueWords(std::u16string_view text)
{
    std::u16string unique;
    std::unordered_set<std::u16string_view> seen;
    auto rest = text.begin();
    while (true) {
        const auto begin = std::find_if_not(rest, text.end(), isSpace);
        if (begin == text.end())
            return unique;
        rest = std::find_if(begin, text.end(), isSpace);
        const std::u16string_view word(begin, rest);
        if (!seen.insert(word).second)
            continue;
        if (!unique.empty())
            unique += u' ';
        unique += word;
    }
}

}  // namespace kelvane
