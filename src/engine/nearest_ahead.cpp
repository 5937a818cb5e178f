#include "engine/nearest_ahead.h"

#include <algorithm>
#include <utility>

namespace kelvane {

NearestAhead::NearestAhead(std::size_t count, unsigned threads, Search search, const CancelFlag& cancel,
                           std::size_t batch)
    : search_(std::move(search)),
      cancel_(cancel),
      batch_(batch),
      matches_(count),
      tasks_((count + batch - 1) / batch, threads,
             [this]() -> OrderedTasks::Task { return [this](std::size_t number) { searchBatch(number); }; })
{
}

void NearestAhead::searchBatch(std::size_t number)
{
    const std::size_t end = std::min(matches_.size(), (number + 1) * batch_);
    for (std::size_t i = number * batch_; i < end; ++i)
        matches_[i] = search_(static_cast<std::uint32_t>(i));
}

bool NearestAhead::await(std::uint32_t reference, const std::function<void()>& whileWaiting)
{
    return tasks_.await(reference / batch_, cancel_, whileWaiting);
}

std::optional<std::uint32_t> NearestAhead::next(std::uint32_t reference, std::uint32_t after) const
{
    const std::uint32_t nearest = matches_[reference].position;
    return nearest == Neighbours::none || after < nearest ? std::optional(nearest) : std::nullopt;
}

std::optional<ContentScore> NearestAhead::score(std::uint32_t reference, std::uint32_t position) const
{
    if (matches_[reference].position != position)
        return std::nullopt;
    ContentScore known;
    known.score = matches_[reference].score;
    return known;
}

}  // namespace kelvane
