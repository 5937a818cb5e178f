#include "base/random.h"

#include <atomic>

namespace kelvane {
namespace {

constexpr std::uint64_t multiplier = 16807;
constexpr std::uint64_t modulus = 2147483647;

std::atomic<std::uint32_t> state{1};

}  // namespace

void seedRandom(std::uint64_t ticks) noexcept
{
    state.store(static_cast<std::uint32_t>(1 + ticks % (modulus - 1)));
}

std::uint32_t nextRandom() noexcept
{
    std::uint32_t seen = state.load();
    std::uint32_t next = 0;
    do {
        next = static_cast<std::uint32_t>(seen * multiplier % modulus);
    } while (!state.compare_exchange_weak(seen, next));
    return next;
}

}  // namespace kelvane
