// CRC-32 as of ISO-HDLC (the CRC of zip and PNG): reflected polynomial 0xEDB88320, initial value 0xFFFFFFFF,
// final complement.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

[[nodiscard]] std::uint32_t crc32(std::span<const std::byte> bytes) noexcept;

}  // namespace kelvane
