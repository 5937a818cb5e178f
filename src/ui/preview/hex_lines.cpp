#include "ui/preview/hex_lines.h"

#include <algorithm>

namespace kelvane {
namespace {

void appendHex(std::string& line, std::uint64_t value, int digits)
{
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        line += "0123456789ABCDEF"[value >> shift & 0xF];
}

char shownByte(std::byte byte)
{
    const auto value = std::to_integer<unsigned char>(byte);
    return value >= 0x20 && value < 0x7F ? static_cast<char>(value) : '.';
}

}  // namespace

std::string hexLine(std::uint64_t position, std::span<const std::byte> bytes)
{
    bytes = bytes.first(std::min<std::size_t>(bytes.size(), bytesPerHexLine));
    std::string line;
    appendHex(line, position, position > 0xFFFF'FFFF ? 12 : 8);
    line += "  ";
    for (std::size_t i = 0; i < bytesPerHexLine; ++i) {
        if (i < bytes.size())
            appendHex(line, std::to_integer<std::uint64_t>(bytes[i]), 2);
        else
            line += "  ";
        line += i == bytesPerHexLine / 2 - 1 ? "  " : " ";
    }
    line += ' ';
    for (const std::byte byte : bytes)
        line += shownByte(byte);
    return line;
}

}  // namespace kelvane
