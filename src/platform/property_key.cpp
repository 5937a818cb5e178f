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

std::uint32_t getLittleEndian(std::span<const std::byte> bytes)
{
    std::uint32_t number = 0;
    for (std::size_t i = bytes.size(); i > 0; --i)
        number = number << 8 | std::to_integer<std::uint32_t>(bytes[i - 1]);
    return number;
}

}  // namespace

PropertyKey propertyKeyOf(std::span<const std::byte, 20> bytes) noexcept
{
    PropertyKey key;
    key.format.data1 = getLittleEndian(bytes.subspan(0, 4));
    key.format.data2 = static_cast<std::uint16_t>(getLittleEndian(bytes.subspan(4, 2)));
    key.format.data3 = static_cast<std::uint16_t>(getLittleEndian(bytes.subspan(6, 2)));
    for (std::size_t i = 0; i < key.format.data4.size(); ++i)
        key.format.data4[i] = std::to_integer<std::uint8_t>(bytes[8 + i]);
    key.number = getLittleEndian(bytes.subspan(16, 4));
    return key;
}

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
