// Songs that sound alike, found ahead of the group walk by workers.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/nearest_ahead.h"
#include "props/mp3_finger.h"

namespace kelvane {

// The nearest match of each is found ahead; further ones, of the few that have one, when they are asked for. Every pair
// is looked at: what is found is what the plain walk finds.
class MusicNeighbours final : public Neighbours {
public:
    // songs: by position; null where there is no fingerprint. similarity: the least score of a match.
    MusicNeighbours(std::vector<Ref<const MP3Finger>> songs, std::int32_t similarity, unsigned threads,
                    const CancelFlag& cancel);

    [[nodiscard]] bool ready(std::uint32_t position, const std::function<void()>& whileWaiting) override
    {
        return ahead_.await(position, whileWaiting);
    }
    [[nodiscard]] bool follow(std::uint32_t reference, const std::function<void()>& whileWaiting) override
    {
        return ahead_.await(reference, whileWaiting);
    }
    [[nodiscard]] std::uint32_t next(std::uint32_t reference, std::uint32_t after) const override;
    [[nodiscard]] std::optional<bool> keysEqual(std::uint32_t a, std::uint32_t b) const override { return a == b; }
    [[nodiscard]] std::optional<ContentScore> knownScore(std::uint32_t reference,
                                                         std::uint32_t position) const override;
    [[nodiscard]] std::uint64_t comparisons() const override { return comparisons_.load(std::memory_order_relaxed); }

private:
    // The nearest position behind `after` that matches, or none; also when cancelled.
    [[nodiscard]] std::uint32_t nearest(std::uint32_t reference, std::uint32_t after) const;

    const std::vector<Ref<const MP3Finger>> songs_;
    const std::int32_t similarity_;
    const CancelFlag& cancel_;
    mutable std::atomic<std::uint64_t> comparisons_{0};
    NearestAhead ahead_;  // last: its threads use everything above
};

}  // namespace kelvane
