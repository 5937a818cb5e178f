// A filter of pairs of documents: says of most pairs that would score low that they do, without a single probe.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "props/sim_doc_model.h"

namespace kelvane {

// What the filter keeps of a document, 1.3 KiB: the statistics, the size, how often which characters stand beside one
// another, and a sample of its stretches of eight characters. Made in one pass over the text; immutable, so any number
// of threads may read it.
class SimDocSignature {
public:
    explicit SimDocSignature(const SimDocDescriptor& document);

    // Whether two documents may reach a score of `similarity` in one or the other order: their samples have something
    // in common, or their characters are such that much matches by chance. A "no" is final for sizes that are too far
    // apart; otherwise it is an estimate, wrong for less than one in a hundred of the pairs that do reach a similarity
    // of 80 or more (bench/similar_texts measures it; below 80 more pairs pass, but nothing is promised). The same for
    // (a, b) and (b, a). About 0.1 microseconds.
    [[nodiscard]] static bool mayReach(const SimDocSignature& a, const SimDocSignature& b, std::int32_t similarity);

private:
    static constexpr std::size_t kinds = 512;  // pairs of neighbours are thrown together by a hash
    static constexpr std::size_t sampledBits = 6, sampled = 1u << sampledBits;

    void countNeighbours(std::u16string_view text);
    void sample(std::u16string_view text);
    [[nodiscard]] static bool haveStretchesInCommon(const SimDocSignature& a, const SimDocSignature& b);

    sim_doc_model::PlainFacts facts_;
    std::array<std::int16_t, kinds> neighbours_;
    std::array<std::uint32_t, sampled> least_;  // the least hash of a stretch, for each part of them
};

}  // namespace kelvane
