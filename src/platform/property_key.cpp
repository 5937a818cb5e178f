#include "platform/property_key.h"

#include "base/crc32.h"

namespace kelvane {
namespace {

// Writes the lowest `count` bytes of a number, least significant first, and moves on behind them.
std::byte* putLittleEndian(std::byte* at, std::uint32_t number, int count)
{
    for (int i = 0; i < count; ++i, number >>= 8)
        *at++ = static_cast<std::byte>(number & 0xFF);
    return at;
}

}  // namespace

std::array<std::byte, 20> PropertyKey::bytes() const noexcept
{
    std::array<std::byte, 20> all{};
    std::byte* at = putLittleEndian(all.data(), format.data1, 4);
    at = putLittleEndian(at, format.data2, 2);
    at = putLittleEndian(at, format.data3, 2);
    for (const std::uint8_t part : format.data4)
        *at++ = static_cast<std::byte>(part);
    putLittleEndian(at, number, 4);
    return all;
}

std::uint32_t propertyIdentifier(const PropertyKey& key) noexcept
{
    return crc32(key.bytes());
}

}  // namespace kelvane
