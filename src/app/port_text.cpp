#include "app/port_text.h"

#include <algorithm>
#include <utility>

#include "base/wtf8.h"

namespace kelvane {
namespace {

void appendUnits(std::vector<std::byte>& bytes, std::string_view text)
{
    for (const char16_t unit : unitsFromWtf8(text) + u'\0') {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
}

void appendBytes(std::vector<std::byte>& bytes, std::string_view text)
{
    const auto raw = std::as_bytes(std::span(text));
    bytes.insert(bytes.end(), raw.begin(), raw.end());
    bytes.push_back(std::byte{0});
}

std::optional<std::u16string> unitsOf(std::span<const std::byte> bytes)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    std::u16string units;
    for (std::size_t i = 0; i < bytes.size(); i += 2)
        units +=
            static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) | std::to_integer<unsigned>(bytes[i + 1]) << 8);
    return units;
}

// Nothing when the last one has no terminator.
template <class Text>
std::optional<std::vector<Text>> terminatedTexts(const Text& all)
{
    if (!all.empty() && all.back() != 0)
        return std::nullopt;
    std::vector<Text> texts;
    for (std::size_t at = 0; at < all.size(); at += texts.back().size() + 1)
        texts.push_back(all.substr(at, all.find(typename Text::value_type{0}, at) - at));
    return texts;
}

std::optional<std::vector<std::string>> decodeUnits(std::span<const std::byte> bytes)
{
    const auto units = unitsOf(bytes);
    const auto texts = units ? terminatedTexts(*units) : std::nullopt;
    if (!texts)
        return std::nullopt;
    std::vector<std::string> decoded(texts->size());
    std::transform(texts->begin(), texts->end(), decoded.begin(), wtf8FromUnits);
    return decoded;
}

}  // namespace

std::vector<std::byte> encodePortTexts(const std::vector<std::string>& texts, CommandSyntax syntax)
{
    std::vector<std::byte> bytes;
    for (const auto& text : texts)
        (syntax == CommandSyntax::windows ? appendUnits : appendBytes)(bytes, text);
    return bytes;
}

std::optional<std::vector<std::string>> decodePortTexts(std::span<const std::byte> bytes, CommandSyntax syntax)
{
    if (syntax == CommandSyntax::windows)
        return decodeUnits(bytes);
    std::string all(bytes.size(), '\0');
    std::transform(bytes.begin(), bytes.end(), all.begin(), [](std::byte b) { return static_cast<char>(b); });
    return terminatedTexts(all);
}

}  // namespace kelvane
