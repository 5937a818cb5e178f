// Numbers made of others, for generators that belong to a pair of files.
#pragma once

#include <cstdint>

namespace kelvane {

// Steele, Lea and Flood's SplitMix64 (OOPSLA 2014): every bit of the input moves every bit of the output.
[[nodiscard]] constexpr std::uint64_t mixedBits(std::uint64_t x)
{
    x += 0x9E3779B97F4A7C15u;
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9u;
    x = (x ^ x >> 27) * 0x94D049BB133111EBu;
    return x ^ x >> 31;
}

// A generator's seed from one number and what tells either file from others.
[[nodiscard]] constexpr std::uint64_t pairSeed(std::uint32_t number, std::uint64_t a, std::uint64_t b)
{
    return mixedBits(mixedBits(mixedBits(number) + a) + b);
}

}  // namespace kelvane
