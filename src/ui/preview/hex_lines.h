// Bytes as people look at them: sixteen a line, in hexadecimal and as characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kelvane {

inline constexpr std::uint64_t bytesPerHexLine = 16;

// How many lines so many bytes take.
[[nodiscard]] constexpr std::uint64_t hexLineCount(std::uint64_t bytes)
{
    return bytes / bytesPerHexLine + (bytes % bytesPerHexLine != 0 ? 1 : 0);
}

// "00000010  48 65 6C 6C 6F 00 ...  Hello." in ASCII: at most sixteen bytes; fewer leave their places blank. What is no
// printable ASCII character is a dot.
[[nodiscard]] std::string hexLine(std::uint64_t position, std::span<const std::byte> bytes);

}  // namespace kelvane
