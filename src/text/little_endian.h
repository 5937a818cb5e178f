// Numbers in the bytes of documents.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelvane {

// 0 where the bytes end before the number does.
template <class Number>
[[nodiscard]] constexpr Number littleEndian(std::span<const std::byte> bytes, std::size_t at)
{
    Number number = 0;
    if (at > bytes.size() || bytes.size() - at < sizeof(Number))
        return number;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        number = static_cast<Number>(static_cast<std::uint64_t>(number) << 8 |
                                     std::to_integer<std::uint64_t>(bytes[at + i]));
    return number;
}

}  // namespace kelvane
