#include "engine/music_neighbours.h"

#include <utility>

namespace kelvane {

MusicNeighbours::MusicNeighbours(std::vector<Ref<const MP3Finger>> songs, std::int32_t similarity, unsigned threads,
                                 const CancelFlag& cancel)
    : songs_(std::move(songs)),
      similarity_(similarity),
      cancel_(cancel),
      ahead_(
          songs_.size(), threads,
          [this](std::uint32_t i) {
              return NearestAhead::Match{nearest(i, i), 0};
          },
          cancel)
{
}

std::uint32_t MusicNeighbours::next(std::uint32_t reference, std::uint32_t after) const
{
    const auto known = ahead_.next(reference, after);
    return known ? *known : nearest(reference, after);
}

// All that next() gives matches.
std::optional<ContentScore> MusicNeighbours::knownScore(std::uint32_t reference, std::uint32_t position) const
{
    return ContentScore{.score = compareFingers(*songs_[reference], *songs_[position])};
}

std::uint32_t MusicNeighbours::nearest(std::uint32_t reference, std::uint32_t after) const
{
    constexpr std::uint32_t betweenLooks = 4096;  // at the flag: well below a millisecond
    const auto count = static_cast<std::uint32_t>(songs_.size());
    if (!songs_[reference])
        return none;
    std::uint64_t compared = 0;
    std::uint32_t found = none;
    for (std::uint32_t i = after + 1; i < count && found == none; ++i) {
        if (i % betweenLooks == 0 && cancel_.cancelled())
            break;
        if (!songs_[i])
            continue;
        ++compared;
        if (similarFingers(*songs_[reference], *songs_[i], similarity_))
            found = i;
    }
    comparisons_.fetch_add(compared, std::memory_order_relaxed);
    return found;
}

}  // namespace kelvane
