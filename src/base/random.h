// Pseudo-random numbers for samples. They are no source of secrets.
#pragma once

#include <cstdint>

namespace kelvane {

// Draws numbers from 1 to 2147483646.
class RandomNumbers {
public:
    virtual ~RandomNumbers() = default;
    [[nodiscard]] virtual std::uint32_t next() noexcept = 0;
};

// Park and Miller's "minimal standard" generator (Communications of the ACM 31/10, 1988):
// state = state x 16807 mod 2147483647; the new state is the number.
class MinimalStandard final : public RandomNumbers {
public:
    // Any seed is made into a state from 1 to 2147483646.
    explicit MinimalStandard(std::uint64_t seed) noexcept : state_(static_cast<std::uint32_t>(1 + seed % 2147483646)) {}
    [[nodiscard]] std::uint32_t next() noexcept override;

private:
    std::uint32_t state_;
};

// The program's shared generator: one state for the process, atomic, so every thread may draw.

// Seeds with 1 + ticks mod 2147483646, so that no tick count gives the generator's dead state 0.
void seedRandom(std::uint64_t ticks) noexcept;

// Returns the new state, 1 to 2147483646.
[[nodiscard]] std::uint32_t nextRandom() noexcept;

// The shared generator as a source like any other.
class SharedRandom final : public RandomNumbers {
public:
    [[nodiscard]] std::uint32_t next() noexcept override { return nextRandom(); }
};

}  // namespace kelvane
