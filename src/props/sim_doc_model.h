// The linear model that scores two documents, in pieces. It is played in two halves: once for (a, b), and, where that
// does not say "clearly different", once more for (b, a) with numbers of its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "props/sim_doc_descriptor.h"

namespace kelvane::sim_doc_model {

inline constexpr std::size_t plainFeatureCount = 5;  // differences of the four statistics and of the sizes
inline constexpr std::size_t probeCount = 12;
inline constexpr std::size_t probeLength = 256;
inline constexpr double leastFirstHalf = -0.2;  // below it the second half is not played
inline constexpr double bias = -4.21507207888;

inline constexpr std::array<double, plainFeatureCount> plainWeights = {
    2.35328386279, -13.2024087886, -5.99597665932, -2.94753385697, -0.229590224926,
};
inline constexpr std::array<double, probeCount> probeWeights = {
    2.91534821264, 0.103264009043, 2.2574783055,  0.627420311485,   -0.0984353457067, 1.58414681906,
    1.80331584882, 2.37408173694,  3.08881074577, -0.0331131457799, 7.47641845949,    1.48032022168,
};

// Two runs of 256 characters each, in the order in which they are matched.
struct Probe {
    std::u16string_view x, y;
};
using Probes = std::array<Probe, probeCount>;
using ProbeFeatures = std::array<double, probeCount>;

// At random places of a and the corresponding ones of b. Draws 12 numbers.
[[nodiscard]] Probes drawProbes(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random);

// The part of a probe that matched, by the count of matched characters: 0 to 1.
[[nodiscard]] double probeFeature(std::uint32_t matched);

// What the model sees of a document beside its text.
struct PlainFacts {
    std::array<double, 4> statistics;
    std::uint64_t size;
};
[[nodiscard]] inline PlainFacts plainFacts(const SimDocDescriptor& document)
{
    return {document.statistics(), document.size()};
}

// The bias and the part of the plain features, added in their order. The same for (b, a).
[[nodiscard]] double plainSum(const PlainFacts& a, const PlainFacts& b);

// What a half comes to: the probes' parts added to the plain sum in their order.
[[nodiscard]] double halfSum(double plainSum, const ProbeFeatures& features);

// On the percentage scale, truncated; and what both halves have to come to together for such a score.
[[nodiscard]] std::int32_t scoreOf(double firstHalf, double secondHalf);
[[nodiscard]] double sumOfScore(std::int32_t score);

}  // namespace kelvane::sim_doc_model
