// Pictures that look alike, found ahead of the group walk by workers.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/nearest_ahead.h"
#include "engine/picture_pairs.h"

namespace kelvane {

struct PicturePairs {
    LaterPicture later;
    // The score of the two at these positions; nothing where there is none. Thread-safe.
    std::function<std::optional<std::int32_t>(std::uint32_t a, std::uint32_t b)> score;
};

// The nearest match of each is found ahead; further ones the walk compares itself.
class PictureNeighbours final : public Neighbours {
public:
    // similarity: the least score of a match. scoresAhead: false where properties part most pairs before their scores
    // are wanted.
    PictureNeighbours(const SortedCandidates& sorted, PicturePairs pairs, std::int32_t similarity, bool scoresAhead,
                      unsigned threads, const CancelFlag& cancel);

    [[nodiscard]] bool ready(std::uint32_t position, const std::function<void()>& whileWaiting) override;
    [[nodiscard]] bool follow(std::uint32_t reference, const std::function<void()>& whileWaiting) override;
    [[nodiscard]] std::uint32_t next(std::uint32_t reference, std::uint32_t after) const override;
    [[nodiscard]] std::optional<bool> keysEqual(std::uint32_t a, std::uint32_t b) const override;
    [[nodiscard]] std::optional<ContentScore> knownScore(std::uint32_t reference,
                                                         std::uint32_t position) const override;
    [[nodiscard]] std::uint64_t comparisons() const override { return comparisons_.load(std::memory_order_relaxed); }

private:
    [[nodiscard]] NearestAhead::Match findNearest(std::uint32_t reference);

    const SortedCandidates& sorted_;
    const PicturePairs pairs_;
    const std::int32_t similarity_;
    const CancelFlag& cancel_;
    std::atomic<std::uint64_t> comparisons_{0};
    std::optional<NearestAhead> ahead_;  // last: its threads use everything above
};

}  // namespace kelvane
