// Compound files made to measure ([MS-CFB], version 3).
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kelvane::testing {

// The streams of the root storage, by name and content. Those below 4096 bytes go into small sectors. At most 60 KB.
[[nodiscard]] std::string makeCompound(const std::vector<std::pair<std::string, std::string>>& streams);

// A number in little-endian order.
template <class Number>
[[nodiscard]] std::string littleEndianBytes(Number number)
{
    std::string bytes;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes += static_cast<char>(static_cast<unsigned long long>(number) >> 8 * i & 0xFF);
    return bytes;
}

}  // namespace kelvane::testing
