// The program's shared pseudo-random numbers.
#pragma once

#include <cstdint>

namespace kelvane {

// Park and Miller's "minimal standard" generator (Communications of the ACM 31/10, 1988): one state for the
// process, atomic, so every thread may draw. It samples; it is no source of secrets.

// Seeds with 1 + ticks mod 2147483646, so that no tick count gives the generator's dead state 0.
void seedRandom(std::uint64_t ticks) noexcept;

// state = state x 16807 mod 2147483647; returns the new state, 1 to 2147483646.
[[nodiscard]] std::uint32_t nextRandom() noexcept;

}  // namespace kelvane
