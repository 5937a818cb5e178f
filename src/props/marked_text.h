// Small text files and streams of unknown encoding.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace kelvane {

// UTF-16 or UTF-8 as a byte order mark says; without one UTF-8, malformed bytes becoming U+FFFD.
[[nodiscard]] std::u16string decodeMarkedText(std::span<const std::byte> bytes);

// UTF-16, little-endian unless a byte order mark says otherwise; ends at the first zero. An odd last byte is dropped.
[[nodiscard]] std::u16string decodeUtf16(std::span<const std::byte> bytes);

}  // namespace kelvane
