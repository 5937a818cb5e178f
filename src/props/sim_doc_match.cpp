// The comparison of two documents against a cut-off, which ends where it cannot be reached any more.
#include <algorithm>
#include <numeric>

#include "props/gestalt.h"
#include "props/sim_doc_model.h"

namespace kelvane {
namespace sim_doc_model {
namespace {

// Sums are taken in other orders here than where they decide, and cut-offs are carried back through the scale of the
// score. All numbers are below 10,000, so that rounding changes neither by as much as a millionth of this.
constexpr double roundingRoom = 1e-6;

// The heaviest first: they tell most.
constexpr auto byWeight = [] {
    std::array<std::size_t, probeCount> order{};
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [](std::size_t a, std::size_t b) { return probeWeights[a] > probeWeights[b]; });
    return order;
}();

// What all probes come to at the most: those of positive weight match whole, the others not at all.
constexpr double mostOfProbes = [] {
    double sum = 0;
    for (const double weight : probeWeights)
        sum += std::max(weight, 0.0);
    return sum;
}();

// One half of the model, whose probes are counted as far as they are needed.
class Half {
public:
    Half(const SimDocDescriptor& a, const SimDocDescriptor& b, double plain, RandomNumbers& random)
        : probes_(drawProbes(a, b, random)), plain_(plain)
    {
    }

    // False as soon as it is sure that the half comes to less. True when everything was counted, which tells nothing
    // about the sum.
    [[nodiscard]] bool mayReach(double least)
    {
        double sum = plain_, open = mostOfProbes;
        for (const std::size_t i : byWeight) {
            if (sum + open < least - roundingRoom)
                return false;
            features_[i] = probeFeature(gestaltMatch(probes_[i].x, probes_[i].y));
            sum += probeWeights[i] * features_[i];
            open -= std::max(probeWeights[i], 0.0);
        }
        return true;
    }

    // The very number that the plain comparison finds.
    [[nodiscard]] double sum() const { return halfSum(plain_, features_); }

private:
    Probes probes_;
    ProbeFeatures features_{};
    double plain_;
};

std::optional<std::int32_t> reachedScore(const SimDocDescriptor& a, const SimDocDescriptor& b, std::int32_t similarity,
                                         RandomNumbers& random)
{
    const double plain = plainSum(plainFacts(a), plainFacts(b));
    const double wanted = sumOfScore(similarity);
    Half first(a, b, plain, random);
    if (!first.mayReach(std::max(leastFirstHalf, wanted - (plain + mostOfProbes))))
        return std::nullopt;
    const double firstSum = first.sum();
    if (firstSum < leastFirstHalf)
        return std::nullopt;
    Half second(b, a, plain, random);
    if (!second.mayReach(wanted - firstSum))
        return std::nullopt;
    const std::int32_t score = scoreOf(firstSum, second.sum());
    return score >= similarity ? std::optional(score) : std::nullopt;
}

}  // namespace
}  // namespace sim_doc_model

std::optional<std::int32_t> similarDocuments(const SimDocDescriptor& a, const SimDocDescriptor& b,
                                             std::int32_t similarity, RandomNumbers& random)
{
    // Of cut-offs that "clearly different" or a score truncated to 0 passes, there is nothing to be gained.
    if (similarity > 0 && !sizesTooDifferent(a.size(), b.size()))
        return sim_doc_model::reachedScore(a, b, similarity, random);
    const std::int32_t score = compareDocuments(a, b, random);
    return score >= similarity ? std::optional(score) : std::nullopt;
}

}  // namespace kelvane
