#include "base/size_text.h"

#include <array>
#include <string_view>

namespace kelvane {
namespace {

constexpr std::array<std::string_view, 6> units = {"KB", "MB", "GB", "TB", "PB", "EB"};

// Tenths of a unit of 2^shift bytes, rounded to nearest; split so that no size overflows.
std::uint64_t tenths(std::uint64_t bytes, unsigned shift)
{
    const std::uint64_t whole = bytes >> shift;
    // The lowest bits of a remainder that large cannot change a tenth; without them the product fits.
    const unsigned cut = shift > 50 ? shift - 50 : 0;
    const std::uint64_t rest = (bytes - (whole << shift)) >> cut;
    const std::uint64_t half = std::uint64_t{1} << (shift - cut - 1);
    return whole * 10 + ((rest * 10 + half) >> (shift - cut));
}

}  // namespace

std::string sizeText(FileSize size)
{
    if (size.bytes < 10 * 1024)
        return std::to_string(size.bytes) + (size.bytes == 1 ? " byte" : " bytes");
    std::size_t unit = 0;
    while (unit + 1 < units.size() && tenths(size.bytes, static_cast<unsigned>(unit + 1) * 10) >= 10240)
        ++unit;
    const std::uint64_t shown = tenths(size.bytes, static_cast<unsigned>(unit + 1) * 10);
    return std::to_string(shown / 10) + '.' + std::to_string(shown % 10) + ' ' + std::string(units[unit]);
}

}  // namespace kelvane
