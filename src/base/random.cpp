#include "base/random.h"

#include <atomic>

namespace kelvane {
namespace {

constexpr std::uint64_t multiplier = 16807;
constexpr std::uint64_t modulus = 2147483647;

std::atomic<std::uint32_t> state{1};

constexpr std::uint32_t following(std::uint32_t seen)
{
    return static_cast<std::uint32_t>(seen * multiplier % modulus);
}

}  // namespace

std::uint32_t MinimalStandard::next() noexcept
{
    return state_ = following(state_);
}

void seedRandom(std::uint64_t ticks) noexcept
{
    state.store(static_cast<std::uint32_t>(1 + ticks % (modulus - 1)));
}

std::uint32_t nextRandom() noexcept
{
    std::uint32_t seen = state.load();
    std::uint32_t next = 0;
    do {
        next = following(seen);
    } while (!state.compare_exchange_weak(seen, next));
    return next;
}

}  // namespace kelvane
