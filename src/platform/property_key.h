// Property keys as the Windows property system publishes them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

// A format identifier: a GUID in its little-endian layout in memory (first three fields little-endian, then bytes).
struct FormatId {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::array<std::uint8_t, 8> data4{};
    friend bool operator==(const FormatId&, const FormatId&) = default;
};

struct PropertyKey {
    FormatId format;
    std::uint32_t number = 0;
    friend bool operator==(const PropertyKey&, const PropertyKey&) = default;

    // The 20 bytes that the 32-bit identifier is computed over: the GUID, then the number, little-endian.
    [[nodiscard]] std::array<std::byte, 20> bytes() const noexcept;
};

// The key with these bytes.
[[nodiscard]] PropertyKey propertyKeyOf(std::span<const std::byte, 20> bytes) noexcept;

// The CRC-32 of the key's bytes: by it, never by name, properties are looked up.
[[nodiscard]] std::uint32_t propertyIdentifier(const PropertyKey& key) noexcept;

}  // namespace kelvane
