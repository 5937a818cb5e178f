#include "props/sim_doc_model.h"

#include <cmath>

namespace kelvane {
namespace {

// How far two sizes are apart, as a part of their mean. Two of nothing are not apart at all.
double relativeDifference(std::uint64_t a, std::uint64_t b)
{
    const double first = static_cast<double>(a), second = static_cast<double>(b);
    return a == b ? 0 : std::abs(first - second) * 2 / (first + second);
}

}  // namespace

bool sizesTooDifferent(std::uint64_t a, std::uint64_t b)
{
    return relativeDifference(a, b) * 100 > 15;
}

namespace sim_doc_model {
namespace {

// The run of b that lies in it where p lies in a: as far from its beginning, in proportion, but whole.
std::uint32_t corresponding(std::uint32_t p, std::uint64_t lengthA, std::uint64_t lengthB)
{
    const std::uint64_t q = p * lengthB / lengthA;
    return static_cast<std::uint32_t>(q + probeLength >= lengthB ? lengthB - probeLength : q);
}

}  // namespace

Probes drawProbes(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random)
{
    Probes probes;
    for (std::size_t i = 0; i < probeCount; ++i) {
        const std::uint32_t p = random.next() % (a.length() - static_cast<std::uint32_t>(probeLength));
        const std::uint32_t q = corresponding(p, a.length(), b.length());
        const Probe forward{a.text().substr(p, probeLength), b.text().substr(q, probeLength)};
        probes[i] = i < probeCount / 2 ? forward : Probe{forward.y, forward.x};
    }
    return probes;
}

double probeFeature(std::uint32_t matched)
{
    return std::trunc(matched * 200.0) / 512 / 100;
}

double plainSum(const PlainFacts& a, const PlainFacts& b)
{
    double sum = bias;
    for (std::size_t i = 0; i < a.statistics.size(); ++i)
        sum += plainWeights[i] * std::abs(a.statistics[i] - b.statistics[i]);
    return sum + plainWeights.back() * relativeDifference(a.size, b.size);
}

double halfSum(double plainSum, const ProbeFeatures& features)
{
    double sum = plainSum;
    for (std::size_t i = 0; i < probeCount; ++i)
        sum += probeWeights[i] * features[i];
    return sum;
}

std::int32_t scoreOf(double firstHalf, double secondHalf)
{
    return static_cast<std::int32_t>((firstHalf + secondHalf) * 0.36 * 50);
}

double sumOfScore(std::int32_t score)
{
    return score / (0.36 * 50);
}

}  // namespace sim_doc_model
}  // namespace kelvane
