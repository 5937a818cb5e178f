#include "results/folded_bytes.h"

#include <algorithm>

#include "base/wtf8.h"

namespace kelvane {
namespace {

constexpr char separatorKey = 1;
constexpr std::size_t longestRun = 255;  // of digits that are compared as one number

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

std::string folded(std::u16string_view text, const TextFolding& folding)
{
    std::string bytes;
    appendFolded(bytes, text, folding);
    return bytes;
}

// A digit, the number of significant digits and these: of two runs the one with more of them is the larger number.
// Zeros in front count for nothing.
std::size_t appendNumber(std::string& key, std::string_view digits)
{
    const std::size_t end = std::find_if_not(digits.begin(), digits.end(), isDigit) - digits.begin();
    const std::size_t zeros = std::min(digits.find_first_not_of('0'), end);
    const std::string_view number = digits.substr(zeros, std::min(end - zeros, longestRun));
    key += '0';
    key += static_cast<char>(number.size());
    key += number;
    return zeros + number.size();
}

}  // namespace

void appendFolded(std::string& bytes, std::u16string_view text, const TextFolding& folding)
{
    if (std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; })) {
        bytes += wtf8FromUnits(folding.lower(text));
        return;
    }
    // Most names are plain ASCII, and there may be a million of them.
    for (const char16_t unit : text)
        bytes += static_cast<char>(unit >= u'A' && unit <= u'Z' ? unit + 32 : unit);
}

void appendSortKey(std::string& bytes, std::u16string_view text, const TextFolding& folding)
{
    const std::string plain = folded(text, folding);
    for (std::size_t at = 0; at < plain.size();) {
        if (isDigit(plain[at])) {
            at += appendNumber(bytes, std::string_view(plain).substr(at));
            continue;
        }
        bytes += plain[at] == '/' || plain[at] == '\\' ? separatorKey : plain[at];
        ++at;
    }
}

}  // namespace kelvane
