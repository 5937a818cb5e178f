#include "base/crc32.h"

#include <array>

namespace kelvane {
namespace {

constexpr std::array<std::uint32_t, 256> makeTable()
{
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) != 0 ? (value >> 1) ^ 0xEDB88320u : value >> 1;
        table[i] = value;
    }
    return table;
}

constexpr auto table = makeTable();

}  // namespace

std::uint32_t crc32(std::span<const std::byte> bytes) noexcept
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const std::byte byte : bytes)
        crc = (crc >> 8) ^ table[(crc ^ std::to_integer<std::uint32_t>(byte)) & 0xFF];
    return ~crc;
}

}  // namespace kelvane
