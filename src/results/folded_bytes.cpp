#include "results/folded_bytes.h"

#include <algorithm>

#include "base/wtf8.h"

namespace kelvane {
namespace {

constexpr char endKey = 1;
constexpr char separatorKey = 2;
constexpr std::size_t longestRun = 254;  // of digits that are compared as one number

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isAscii(std::u16string_view text)
{
    char16_t all = 0;
    for (const char16_t unit : text)
        all |= unit;
    return all < 0x80;
}

void appendBytes(std::string& bytes, std::u16string_view text)
{
    if (isAscii(text))
        bytes.append(text.begin(), text.end());
    else
        bytes += wtf8FromUnits(text);
}

// A digit, the number of significant digits and these: of two runs the one with more of them is the larger number.
// Gives the number of digits used.
std::size_t appendNumber(std::string& key, std::string_view digits)
{
    const auto end = static_cast<std::size_t>(std::find_if_not(digits.begin(), digits.end(), isDigit) - digits.begin());
    const std::size_t zeros = std::min(digits.find_first_not_of('0'), end);
    const std::string_view number = digits.substr(zeros, std::min(end - zeros, longestRun));
    key += '0';
    key += static_cast<char>(number.size() + 1);
    key += number;
    return zeros + number.size();
}

char keyOf(char byte)
{
    const bool comesFirst = byte == '/' || byte == '\\' || byte == '\0';
    return comesFirst ? separatorKey : byte;
}

// Whether nothing was lost in the key but what it says of digits.
bool appendOrder(std::string& key, std::string_view folded)
{
    bool exact = true;
    for (std::size_t at = 0; at < folded.size();) {
        if (!isDigit(folded[at])) {
            key += keyOf(folded[at++]);
            continue;
        }
        exact = exact && folded[at] != '0';
        at += appendNumber(key, folded.substr(at));
    }
    return exact;
}

}  // namespace

void appendFolded(std::string& bytes, std::u16string_view text, const TextFolding& folding)
{
    if (!isAscii(text)) {
        bytes += wtf8FromUnits(folding.lower(text));
        return;
    }
    // Most names are plain ASCII, and there may be a million of them.
    for (const char16_t unit : text)
        bytes += static_cast<char>(unit >= u'A' && unit <= u'Z' ? unit + 32 : unit);
}

void appendSortKey(std::string& bytes, std::u16string_view text, const TextFolding& folding)
{
    std::string folded, own;
    appendFolded(folded, text, folding);
    appendBytes(own, text);
    if (appendOrder(bytes, folded) && folded == own)
        return;
    bytes += endKey;
    std::transform(own.begin(), own.end(), std::back_inserter(bytes), keyOf);
}

}  // namespace kelvane
