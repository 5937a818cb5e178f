#include "platform/pe_sections.h"

namespace kelvane {
namespace {

// Offsets of the PE format, as Microsoft publishes it.
constexpr std::size_t headerPlaceAt = 0x3C;
constexpr std::size_t sectionCountAt = 6;
constexpr std::size_t optionalSizeAt = 20;
constexpr std::size_t optionalHeaderAt = 24;
constexpr std::size_t sectionRowSize = 40;
constexpr std::size_t rawSizeAt = 16;
constexpr std::size_t rawPlaceAt = 20;
constexpr std::uint64_t dosMark = 0x5A4D;    // "MZ"
constexpr std::uint64_t signature = 0x4550;  // "PE", 0, 0

// Little-endian; all ones, which no place and no count of a good file is, where the bytes end too early.
std::uint64_t number(std::span<const std::byte> bytes, std::uint64_t at, std::size_t size) noexcept
{
    if (at > bytes.size() || size > bytes.size() - at)
        return UINT64_MAX;
    std::uint64_t value = 0;
    for (std::size_t byte = 0; byte < size; ++byte)
        value |= std::to_integer<std::uint64_t>(bytes[static_cast<std::size_t>(at) + byte]) << 8 * byte;
    return value;
}

}  // namespace

bool holdsItsSections(std::span<const std::byte> beginning, std::uint64_t fileSize) noexcept
{
    const std::uint64_t header = number(beginning, headerPlaceAt, 4);
    if (number(beginning, 0, 2) != dosMark || header > beginning.size() || number(beginning, header, 4) != signature)
        return false;
    const std::uint64_t count = number(beginning, header + sectionCountAt, 2);
    const std::uint64_t optionalSize = number(beginning, header + optionalSizeAt, 2);
    if (count == UINT64_MAX || optionalSize == UINT64_MAX)
        return false;
    for (std::uint64_t section = 0; section < count; ++section) {
        const std::uint64_t row = header + optionalHeaderAt + optionalSize + section * sectionRowSize;
        const std::uint64_t size = number(beginning, row + rawSizeAt, 4);
        const std::uint64_t place = number(beginning, row + rawPlaceAt, 4);
        if (size > fileSize || place > fileSize - size)
            return false;
    }
    return count > 0;
}

}  // namespace kelvane
