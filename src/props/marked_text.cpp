#include "props/marked_text.h"

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::byte markHigh{0xFE};
constexpr std::byte markLow{0xFF};

bool beginsWith(std::span<const std::byte> bytes, std::byte first, std::byte second)
{
    return bytes.size() >= 2 && bytes[0] == first && bytes[1] == second;
}

std::u16string units(std::span<const std::byte> bytes, bool bigEndian)
{
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = std::to_integer<unsigned>(bytes[bigEndian ? i + 1 : i]);
        const auto high = std::to_integer<unsigned>(bytes[bigEndian ? i : i + 1]);
        if (low == 0 && high == 0)
            break;
        text += static_cast<char16_t>(high << 8 | low);
    }
    return text;
}

}  // namespace

std::u16string decodeUtf16(std::span<const std::byte> bytes)
{
    if (beginsWith(bytes, markHigh, markLow))
        return units(bytes.subspan(2), true);
    return units(beginsWith(bytes, markLow, markHigh) ? bytes.subspan(2) : bytes, false);
}

std::u16string decodeMarkedText(std::span<const std::byte> bytes)
{
    if (beginsWith(bytes, markHigh, markLow) || beginsWith(bytes, markLow, markHigh))
        return decodeUtf16(bytes);
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return toUtf16(text);
}

}  // namespace kelvane
