#include "engine/property_stage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvane {
namespace {

constexpr std::uint64_t percentScale = 200;
constexpr std::uint64_t ticksPerHour = 36'000'000'000;

std::uint64_t magnitude(std::int64_t value)
{
    const auto bits = static_cast<std::uint64_t>(value);
    return value < 0 ? 0 - bits : bits;
}

// One step of binary multiplication and division: whole x sum + rest grows by addend, all below 2^64.
void addTo(std::uint64_t& whole, std::uint64_t& rest, std::uint64_t addend, std::uint64_t sum)
{
    if (addend != 0 && rest >= sum - addend) {
        rest -= sum - addend;
        ++whole;
    } else {
        rest += addend;
    }
}

// part x 200 / sum for part <= sum, bit by bit from the top of 200, since the product itself may need 72 bits.
std::int32_t scaledShare(std::uint64_t part, std::uint64_t sum)
{
    std::uint64_t whole = 0;
    std::uint64_t rest = 0;
    for (std::uint64_t bit = 128; bit != 0; bit /= 2) {
        whole *= 2;
        addTo(whole, rest, rest, sum);
        if ((percentScale & bit) != 0)
            addTo(whole, rest, part, sum);
    }
    return static_cast<std::int32_t>(whole);
}

}  // namespace

std::int32_t numberDifference(std::int64_t a, std::int64_t b) noexcept
{
    if (a == b)
        return 0;
    if ((a < 0) != (b < 0))
        return static_cast<std::int32_t>(percentScale);  // |a - b| is |a| + |b|
    const std::uint64_t x = magnitude(a);
    const std::uint64_t y = magnitude(b);
    return scaledShare(std::max(x, y) - std::min(x, y), x + y);
}

std::int32_t realDifference(double a, double b) noexcept
{
    if (a == b)
        return 0;
    if (!std::isfinite(a) || !std::isfinite(b))
        return static_cast<std::int32_t>(percentScale);
    constexpr double huge = std::numeric_limits<double>::max() / 1024;
    if (std::abs(a) > huge || std::abs(b) > huge) {  // a power of two leaves the quotient as it is
        a /= 1024;
        b /= 1024;
    }
    return static_cast<std::int32_t>(std::abs(a - b) * static_cast<double>(percentScale) / (std::abs(a) + std::abs(b)));
}

std::int32_t dateDifference(std::int64_t a, std::int64_t b, std::int64_t hoursPerPercent) noexcept
{
    const auto [earlier, later] = std::minmax(a, b);
    const std::uint64_t apart = static_cast<std::uint64_t>(later) - static_cast<std::uint64_t>(earlier);
    const auto hours = static_cast<std::uint64_t>(std::clamp<std::int64_t>(hoursPerPercent, 1, 10'000));
    return static_cast<std::int32_t>(apart / (hours * ticksPerHour));  // at most 2^64 / 3.6e10: fits
}

std::int32_t requiredPercent(std::int32_t similarity, bool firstProperty, bool moreIsCompared) noexcept
{
    return firstProperty && moreIsCompared && similarity < 95 ? 95 : similarity;
}

}  // namespace kelvane
