#include "engine/picture_neighbours.h"

#include <utility>

namespace kelvane {

PictureNeighbours::PictureNeighbours(const SortedCandidates& sorted, PicturePairs pairs, std::int32_t similarity,
                                     bool scoresAhead, unsigned threads, const CancelFlag& cancel)
    : sorted_(sorted),
      pairs_(std::move(pairs)),
      similarity_(similarity),
      cancel_(cancel),
      nearest_(scoresAhead ? sorted.size() : 0)
{
    if (!scoresAhead)
        return;
    tasks_.emplace(sorted.size(), threads, [this]() -> OrderedTasks::Task {
        return [this](std::size_t position) { findNearest(static_cast<std::uint32_t>(position)); };
    });
}

bool PictureNeighbours::ready(std::uint32_t position, const std::function<void()>& whileWaiting)
{
    return !tasks_ || tasks_->await(position, cancel_, whileWaiting);
}

bool PictureNeighbours::follow(std::uint32_t reference, const std::function<void()>& whileWaiting)
{
    return ready(reference, whileWaiting);
}

std::uint32_t PictureNeighbours::next(std::uint32_t reference, std::uint32_t after) const
{
    if (tasks_) {
        const std::uint32_t nearest = nearest_[reference].position;
        if (nearest == none || after < nearest)
            return nearest;
    }
    return pairs_.later(reference, after);
}

std::optional<bool> PictureNeighbours::keysEqual(std::uint32_t a, std::uint32_t b) const
{
    return sorted_.classes[a] == sorted_.classes[b];
}

std::optional<ContentScore> PictureNeighbours::knownScore(std::uint32_t reference, std::uint32_t position) const
{
    if (!tasks_ || nearest_[reference].position != position)
        return std::nullopt;
    ContentScore score;
    score.score = nearest_[reference].score;
    return score;
}

void PictureNeighbours::findNearest(std::uint32_t reference)
{
    std::uint32_t i = pairs_.later(reference, reference);
    for (; i != none && !cancel_.cancelled(); i = pairs_.later(reference, i)) {
        const auto score = pairs_.score(reference, i);
        comparisons_.fetch_add(1, std::memory_order_relaxed);
        if (score && *score >= similarity_) {
            nearest_[reference] = {i, *score};
            return;
        }
    }
}

}  // namespace kelvane
