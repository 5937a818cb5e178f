// What fuzz targets find out by: a condition that does not hold ends the program, which the fuzzer takes for a find.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <span>

namespace kelvane {

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

inline bool equal(std::span<const std::byte> a, std::span<const std::byte> b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace kelvane
