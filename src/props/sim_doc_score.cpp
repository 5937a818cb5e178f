#include "props/gestalt.h"
#include "props/sim_doc_model.h"

namespace kelvane {
namespace sim_doc_model {
namespace {

double playHalf(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random)
{
    const Probes probes = drawProbes(a, b, random);
    ProbeFeatures features;
    for (std::size_t i = 0; i < probeCount; ++i)
        features[i] = probeFeature(gestaltMatch(probes[i].x, probes[i].y));
    return halfSum(plainSum(plainFacts(a), plainFacts(b)), features);
}

}  // namespace
}  // namespace sim_doc_model

std::int32_t compareDocuments(const SimDocDescriptor& a, const SimDocDescriptor& b, RandomNumbers& random)
{
    if (sizesTooDifferent(a.size(), b.size()))
        return document_score::sizesTooDifferent;
    const double first = sim_doc_model::playHalf(a, b, random);
    if (first < sim_doc_model::leastFirstHalf)
        return document_score::clearlyDifferent;
    return sim_doc_model::scoreOf(first, sim_doc_model::playHalf(b, a, random));
}

}  // namespace kelvane
