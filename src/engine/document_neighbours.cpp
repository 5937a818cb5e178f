#include "engine/document_neighbours.h"

#include <utility>

namespace kelvane {

DocumentNeighbours::DocumentNeighbours(OrderedDocuments documents, const DocumentPairs& pairs, PairFilter filter,
                                       unsigned threads, const CancelFlag& cancel)
    : documents_(std::move(documents)),
      pairs_(pairs),
      filter_(std::move(filter)),
      cancel_(cancel),
      nearest_(documents_.descriptors.size()),
      tasks_(documents_.descriptors.size(), threads, [this]() -> OrderedTasks::Task {
          return [this](std::size_t position) { findNearest(static_cast<std::uint32_t>(position)); };
      })
{
}

bool DocumentNeighbours::ready(std::uint32_t position, const std::function<void()>& whileWaiting)
{
    return tasks_.await(position, cancel_, whileWaiting);
}

bool DocumentNeighbours::follow(std::uint32_t reference, const std::function<void()>& whileWaiting)
{
    return tasks_.await(reference, cancel_, whileWaiting);
}

std::uint32_t DocumentNeighbours::next(std::uint32_t reference, std::uint32_t after) const
{
    const std::uint32_t nearest = nearest_[reference].position;
    if (nearest == none || after < nearest)
        return nearest;
    return comparable(reference, after);
}

std::optional<ContentScore> DocumentNeighbours::knownScore(std::uint32_t reference, std::uint32_t position) const
{
    const Nearest& nearest = nearest_[reference];
    if (nearest.position != position)
        return std::nullopt;
    return ContentScore{.score = nearest.score, .a = {}, .b = {}};
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

void DocumentNeighbours::findNearest(std::uint32_t reference)
{
    std::uint32_t i = comparable(reference, reference);
    std::uint64_t compared = 0;
    for (; i != none && !cancel_.cancelled(); i = comparable(reference, i)) {
        ++compared;
        const auto score = pairs_.match(*documents_.descriptors[reference], *documents_.descriptors[i]);
        if (score) {
            nearest_[reference] = {i, *score};
            break;
        }
    }
    comparisons_.fetch_add(compared, std::memory_order_relaxed);
}

}  // namespace kelvane
