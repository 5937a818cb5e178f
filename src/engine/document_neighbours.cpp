#include "engine/document_neighbours.h"

#include <utility>

namespace kelvane {

DocumentNeighbours::DocumentNeighbours(OrderedDocuments documents, const DocumentPairs& pairs, PairFilter filter,
                                       unsigned threads, const CancelFlag& cancel)
    : documents_(std::move(documents)),
      pairs_(pairs),
      filter_(std::move(filter)),
      cancel_(cancel),
      ahead_(
          documents_.descriptors.size(), threads, [this](std::uint32_t i) { return findNearest(i); }, cancel)
{
}

std::uint32_t DocumentNeighbours::next(std::uint32_t reference, std::uint32_t after) const
{
    const auto known = ahead_.next(reference, after);
    return known ? *known : comparable(reference, after);
}

std::uint32_t DocumentNeighbours::comparable(std::uint32_t reference, std::uint32_t after) const
{
    const auto& descriptors = documents_.descriptors;
    const auto& types = documents_.types;
    if (!descriptors[reference])
        return none;
    for (std::uint32_t i = after + 1; i < size(); ++i) {
        if (!descriptors[i] || (!types.empty() && types[i] != types[reference]))
            continue;
        if (sizesTooDifferent(descriptors[reference]->size(), descriptors[i]->size()))
            return none;
        if (!filter_ || filter_(reference, i))
            return i;
    }
    return none;
}

NearestAhead::Match DocumentNeighbours::findNearest(std::uint32_t reference)
{
    NearestAhead::Match match;
    std::uint64_t compared = 0;
    for (std::uint32_t i = comparable(reference, reference); i != none && match.position == none;
         i = comparable(reference, i)) {
        if (cancel_.cancelled())
            break;
        ++compared;
        if (const auto score = pairs_.match(*documents_.descriptors[reference], *documents_.descriptors[i]))
            match = {i, *score};
    }
    comparisons_.fetch_add(compared, std::memory_order_relaxed);
    return match;
}

}  // namespace kelvane
