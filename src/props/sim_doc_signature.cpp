#include "props/sim_doc_signature.h"

#include <algorithm>
#include <cmath>

namespace kelvane {
namespace {

constexpr double full = 32767;  // stands for a share of 1

std::size_t kindOf(char16_t first, char16_t second, std::size_t kinds)
{
    const std::uint32_t both = static_cast<std::uint32_t>(first) << 16 | second;
    return both * 0x9E3779B1u >> 16 & (kinds - 1);
}

// What the plain features and the probes have to come to by the estimate where no stretches are in common. Fitted to
// texts of many kinds; little loss was wanted more than many pairs ruled out.
double leastEstimate(std::int32_t similarity)
{
    return 3.0 - 0.03 * (80 - std::clamp(similarity, 0, 80));
}

constexpr double perProduct = 40;

// A polynomial of the last eight characters, and its bits well mixed (the finaliser of Steele, Lea and Flood's
// SplitMix, 2014, with other multipliers).
class StretchHash {
public:
    static constexpr std::size_t length = 8;

    void add(char16_t unit) { hash_ = hash_ * factor + unit + 1u; }
    void drop(char16_t unit) { hash_ -= highest * (unit + 1u); }
    [[nodiscard]] std::uint64_t mixed() const
    {
        std::uint64_t hash = (hash_ ^ hash_ >> 32) * 0xD6E8FEB86659FD93u;
        hash ^= hash >> 32;
        return hash * 0xD6E8FEB86659FD93u;
    }

private:
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15u;
    static constexpr std::uint64_t highest = [] {
        std::uint64_t power = 1;
        for (std::size_t i = 0; i < length; ++i)
            power *= factor;
        return power;
    }();

    std::uint64_t hash_ = 0;
};

}  // namespace

SimDocSignature::SimDocSignature(const SimDocDescriptor& document) : facts_(sim_doc_model::plainFacts(document))
{
    countNeighbours(document.text());
    sample(document.text());
}

// A power between 1/2 and 1 weighs what is frequent neither too much nor too little: the product of two signatures then
// follows best how much of two unrelated runs of both texts matches.
void SimDocSignature::countNeighbours(std::u16string_view text)
{
    std::array<std::uint32_t, kinds> counts{};
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        ++counts[kindOf(text[i], text[i + 1], kinds)];
    for (std::size_t i = 0; i < kinds; ++i)
        neighbours_[i] = static_cast<std::int16_t>(full * std::pow(counts[i] / static_cast<double>(text.size()), 0.75));
}

// Texts with a part p of all their stretches in common have about that part of these in common (A. Z. Broder, "On the
// resemblance and containment of documents", 1997).
void SimDocSignature::sample(std::u16string_view text)
{
    least_.fill(~std::uint32_t{0});
    StretchHash hash;
    for (std::size_t i = 0; i < text.size(); ++i) {
        hash.add(text[i]);
        if (i >= StretchHash::length)
            hash.drop(text[i - StretchHash::length]);
        if (i + 1 < StretchHash::length)
            continue;
        const std::uint64_t mixed = hash.mixed();
        std::uint32_t& least = least_[mixed >> (64 - sampledBits)];
        least = std::min(least, static_cast<std::uint32_t>(mixed >> 16));
    }
}

// One may be there by chance, a phrase that everybody uses.
bool SimDocSignature::haveStretchesInCommon(const SimDocSignature& a, const SimDocSignature& b)
{
    int common = 0;
    for (std::size_t i = 0; i < sampled; ++i)
        common += a.least_[i] == b.least_[i] ? 1 : 0;
    return common > 1;
}

bool SimDocSignature::mayReach(const SimDocSignature& a, const SimDocSignature& b, std::int32_t similarity)
{
    if (sizesTooDifferent(a.facts_.size, b.facts_.size))
        return false;
    if (haveStretchesInCommon(a, b))
        return true;
    const double wanted = leastEstimate(similarity) - sim_doc_model::plainSum(a.facts_, b.facts_);
    if (wanted <= 0)
        return true;
    std::int32_t product = 0;  // of shares of 1: at most full x full
    for (std::size_t i = 0; i < kinds; ++i)
        product += a.neighbours_[i] * b.neighbours_[i];
    const double root = wanted / perProduct;
    return product >= full * full * root * std::sqrt(root);
}

}  // namespace kelvane
