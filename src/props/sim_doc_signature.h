// A filter of pairs of documents: says of most pairs that would score low that they do, without a single probe.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "props/sim_doc_model.h"

namespace kelvane {

// What the filter keeps of a document, 1 KiB: the statistics, the size, and how often which characters stand beside one
// another. Made in one pass over the text; immutable, so any number of threads may read it.
class SimDocSignature {
public:
    explicit SimDocSignature(const SimDocDescriptor& document);

    // Whether two documents may reach a score of `similarity` in one or the other order. An estimate: texts that are
    // alike have like neighbourhoods of characters. A "no" is final for sizes that are too far apart; otherwise it is
    // wrong for less than one in a hundred of the pairs that do reach a similarity of 80 or more (bench/similar_texts
    // measures it; below 80 nothing is promised). The same for (a, b) and (b, a). About 0.1 microseconds.
    [[nodiscard]] static bool mayReach(const SimDocSignature& a, const SimDocSignature& b, std::int32_t similarity);

private:
    static constexpr std::size_t kinds = 512;  // pairs of neighbours are thrown together by a hash

    sim_doc_model::PlainFacts facts_;
    std::array<std::int16_t, kinds> neighbours_;
};

}  // namespace kelvane
