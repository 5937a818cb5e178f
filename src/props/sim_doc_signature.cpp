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

// What the plain features and the probes have to come to by the estimate, fitted to texts of many kinds: little loss
// was wanted more than many pairs ruled out. From 80 up the cut-off hardly matters, since there the pairs are lost
// whose texts are alike beyond what their characters tell.
double leastEstimate(std::int32_t similarity)
{
    return 0.7 - 0.03 * (80 - std::clamp(similarity, 0, 80));
}

constexpr double perProduct = 40;

}  // namespace

// A power between 1/2 and 1 weighs what is frequent neither too much nor too little: the product of two signatures then
// follows best how much of two unrelated runs of both texts matches.
SimDocSignature::SimDocSignature(const SimDocDescriptor& document) : facts_(sim_doc_model::plainFacts(document))
{
    std::array<std::uint32_t, kinds> counts{};
    const std::u16string_view text = document.text();
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        ++counts[kindOf(text[i], text[i + 1], kinds)];
    for (std::size_t i = 0; i < kinds; ++i)
        neighbours_[i] = static_cast<std::int16_t>(full * std::pow(counts[i] / static_cast<double>(text.size()), 0.75));
}

bool SimDocSignature::mayReach(const SimDocSignature& a, const SimDocSignature& b, std::int32_t similarity)
{
    if (sizesTooDifferent(a.facts_.size, b.facts_.size))
        return false;
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
