#include "engine/picture_neighbours.h"

#include <utility>

namespace kelvane {
namespace {

constexpr std::size_t batch = 8;  // each but the last uses the preview that the one before it was held against

}  // namespace

PictureNeighbours::PictureNeighbours(const SortedCandidates& sorted, PicturePairs pairs, std::int32_t similarity,
                                     bool scoresAhead, unsigned threads, const CancelFlag& cancel)
    : sorted_(sorted), pairs_(std::move(pairs)), similarity_(similarity), cancel_(cancel)
{
    if (scoresAhead)
        ahead_.emplace(
            sorted.size(), threads, [this](std::uint32_t i) { return findNearest(i); }, cancel, batch);
}

bool PictureNeighbours::ready(std::uint32_t position, const std::function<void()>& whileWaiting)
{
    return !ahead_ || ahead_->await(position, whileWaiting);
}

bool PictureNeighbours::follow(std::uint32_t reference, const std::function<void()>& whileWaiting)
{
    return ready(reference, whileWaiting);
}

std::uint32_t PictureNeighbours::next(std::uint32_t reference, std::uint32_t after) const
{
    const auto known = ahead_ ? ahead_->next(reference, after) : std::nullopt;
    return known ? *known : pairs_.later(reference, after);
}

std::optional<bool> PictureNeighbours::keysEqual(std::uint32_t a, std::uint32_t b) const
{
    return sorted_.classes[a] == sorted_.classes[b];
}

std::optional<ContentScore> PictureNeighbours::knownScore(std::uint32_t reference, std::uint32_t position) const
{
    return ahead_ ? ahead_->score(reference, position) : std::nullopt;
}

NearestAhead::Match PictureNeighbours::findNearest(std::uint32_t reference)
{
    std::uint32_t i = pairs_.later(reference, reference);
    for (; i != none && !cancel_.cancelled(); i = pairs_.later(reference, i)) {
        const auto score = pairs_.score(reference, i);
        comparisons_.fetch_add(1, std::memory_order_relaxed);
        if (score && *score >= similarity_)
            return {i, *score};
    }
    return {};
}

}  // namespace kelvane
