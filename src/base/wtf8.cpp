#include "base/wtf8.h"

#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::size_t surrogateBytes = 3;

bool isSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

bool isPair(std::u16string_view units, std::size_t at)
{
    return units[at] < 0xDC00 && at + 1 < units.size() && units[at + 1] >= 0xDC00 && units[at + 1] <= 0xDFFF;
}

bool isSurrogate(std::string_view bytes, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[at + i]); };
    return at + surrogateBytes <= bytes.size() && byte(0) == 0xED && (byte(1) & 0xE0) == 0xA0 &&
           (byte(2) & 0xC0) == 0x80;
}

}  // namespace

std::u16string unitsFromWtf8(std::string_view bytes)
{
    std::u16string units;
    std::size_t done = 0;
    for (auto at = bytes.find('\xED'); at != std::string_view::npos; at = bytes.find('\xED', at + 1)) {
        if (!isSurrogate(bytes, at))
            continue;
        units += toUtf16(bytes.substr(done, at - done));
        units += static_cast<char16_t>(0xD000 | (bytes[at + 1] & 0x3F) << 6 | (bytes[at + 2] & 0x3F));
        done = at + surrogateBytes;
    }
    return units + toUtf16(bytes.substr(done));
}

std::string wtf8FromUnits(std::u16string_view units)
{
    std::string bytes;
    std::size_t done = 0;
    for (std::size_t at = 0; at < units.size(); ++at) {
        if (!isSurrogate(units[at]))
            continue;
        if (isPair(units, at)) {
            ++at;
            continue;
        }
        bytes += toUtf8(units.substr(done, at - done));
        bytes +=
            {'\xED', static_cast<char>(0x80 | (units[at] >> 6 & 0x3F)), static_cast<char>(0x80 | (units[at] & 0x3F))};
        done = at + 1;
    }
    return bytes + toUtf8(units.substr(done));
}

}  // namespace kelvane
