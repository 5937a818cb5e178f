#include "text/rtf_tokens.h"

#include <algorithm>
#include <limits>

namespace kelvane {
namespace {

constexpr std::string_view lineEnds("\r\n\0", 3);
constexpr std::string_view special("{}\\\r\n\0", 6);

constexpr bool isLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}
constexpr bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

// -1 for none
constexpr int hexDigit(char byte)
{
    if (isDigit(byte))
        return byte - '0';
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// Takes the digits off the front; what no 32 bits hold becomes the largest number.
int takeNumber(std::string_view& text)
{
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    std::int64_t number = 0;
    while (!text.empty() && isDigit(text.front())) {
        number = std::min<std::int64_t>(number * 10 + (text.front() - '0'), most);
        text.remove_prefix(1);
    }
    return static_cast<int>(negative ? -number : number);
}

bool beginsNumber(std::string_view text)
{
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    return !text.empty() && isDigit(text.front());
}

}  // namespace

std::optional<RtfToken> RtfTokens::next()
{
    rest_.remove_prefix(std::min(rest_.find_first_not_of(lineEnds), rest_.size()));
    if (rest_.empty())
        return std::nullopt;
    if (rest_.front() == '\\' && rest_.size() > 1)
        return control();
    if (rest_.front() == '{' || rest_.front() == '}') {
        RtfToken token;
        token.kind = rest_.front() == '{' ? RtfToken::Kind::begin : RtfToken::Kind::end;
        rest_.remove_prefix(1);
        return token;
    }
    return bytes();
}

void RtfTokens::skip(std::size_t count)
{
    rest_.remove_prefix(std::min(count, rest_.size()));
}

RtfToken RtfTokens::control()
{
    rest_.remove_prefix(1);
    if (isLetter(rest_.front()))
        return word();
    if (rest_.front() == '\'')
        return hex();
    RtfToken token;
    token.kind = RtfToken::Kind::symbol;
    token.byte = rest_.front();
    rest_.remove_prefix(1);
    return token;
}

RtfToken RtfTokens::word()
{
    RtfToken token;
    token.kind = RtfToken::Kind::word;
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), isLetter);
    token.text = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
    rest_.remove_prefix(token.text.size());
    token.hasNumber = beginsNumber(rest_);
    if (token.hasNumber)
        token.number = takeNumber(rest_);
    // One blank belongs to the word.
    rest_.remove_prefix(rest_.starts_with(' ') ? 1 : 0);
    return token;
}

// What are no digits stays as text.
RtfToken RtfTokens::hex()
{
    RtfToken token;
    const int high = rest_.size() > 2 ? hexDigit(rest_[1]) : -1;
    const int low = rest_.size() > 2 ? hexDigit(rest_[2]) : -1;
    const bool whole = high >= 0 && low >= 0;
    token.kind = whole ? RtfToken::Kind::hex : RtfToken::Kind::symbol;
    token.byte = whole ? static_cast<char>(high * 16 + low) : '\'';
    rest_.remove_prefix(whole ? 3 : 1);
    return token;
}

RtfToken RtfTokens::bytes()
{
    RtfToken token;
    const std::size_t end = std::min(rest_.find_first_of(special, 1), rest_.size());
    token.text = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return token;
}

}  // namespace kelvane
