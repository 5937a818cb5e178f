#include "base/placeholders.h"

#include <algorithm>
#include <vector>

namespace kelvane {
namespace {

constexpr std::u16string_view digits = u"0123456789";
constexpr std::u16string_view flags = u"-+ #0";
constexpr std::u16string_view lengths = u"hlLjztqwI";
constexpr std::u16string_view conversions = u"diouxXeEfFgGaAcCsSpn";

struct Placeholders {
    std::vector<std::u16string_view> inOrder;   // %s, %02d
    std::vector<std::u16string_view> numbered;  // %1
};

// The first place from `at` on whose character is none of these.
std::size_t past(std::u16string_view text, std::size_t at, std::u16string_view characters)
{
    return std::min(text.find_first_not_of(characters, at), text.size());
}

// The end of "%[flags][width][.precision][length]conversion" that begins at `at`; `at` itself when none does.
std::size_t printfEnd(std::u16string_view text, std::size_t at)
{
    std::size_t end = past(text, past(text, at + 1, flags), digits);
    if (end < text.size() && text[end] == u'.')
        end = past(text, end + 1, digits);
    end = past(text, end, lengths);
    return end < text.size() && conversions.find(text[end]) != std::u16string_view::npos ? end + 1 : at;
}

Placeholders placeholdersOf(std::u16string_view text)
{
    Placeholders found;
    for (std::size_t at = text.find(u'%'); at < text.size(); at = text.find(u'%', at)) {
        const std::size_t numberEnd = past(text, at + 1, digits);
        if (const std::size_t end = printfEnd(text, at); end > at) {
            found.inOrder.push_back(text.substr(at, end - at));
            at = end;
        } else if (numberEnd > at + 1) {
            found.numbered.push_back(text.substr(at, numberEnd - at));
            at = numberEnd;
        } else {
            at += text.substr(at).starts_with(u"%%") ? 2 : 1;
        }
    }
    std::sort(found.numbered.begin(), found.numbered.end());
    return found;
}

}  // namespace

bool samePlaceholders(std::u16string_view english, std::u16string_view translation)
{
    const Placeholders wanted = placeholdersOf(english);
    const Placeholders given = placeholdersOf(translation);
    return wanted.inOrder == given.inOrder && wanted.numbered == given.numbered;
}

}  // namespace kelvane
