// Which later candidates a file may match at all: what the group walk goes through.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>

#include "engine/candidate_sort.h"
#include "engine/similar_content.h"

namespace kelvane {

// Positions are those of SortedCandidates. Used by the walk's thread alone.
class Neighbours {
public:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    virtual ~Neighbours() = default;

    // Called for every position in ascending order, before anything else is asked about it; may wait, and then calls
    // the function every now and then. False when the work was cancelled.
    [[nodiscard]] virtual bool ready(std::uint32_t /*position*/, const std::function<void()>& /*whileWaiting*/)
    {
        return true;
    }
    // Called when a found file becomes the one that others are compared with; waits like ready().
    [[nodiscard]] virtual bool follow(std::uint32_t /*reference*/, const std::function<void()>& /*whileWaiting*/)
    {
        return true;
    }
    // The nearest position behind `after` that may match the reference, or none. `after` is the last one tried, and not
    // before the reference.
    [[nodiscard]] virtual std::uint32_t next(std::uint32_t reference, std::uint32_t after) const = 0;
    // What comparing the contents of the two gave, where that is known.
    [[nodiscard]] virtual std::optional<ContentScore> knownScore(std::uint32_t /*reference*/,
                                                                 std::uint32_t /*position*/) const
    {
        return std::nullopt;
    }
    // Whether the two have equal primary values by the sort.
    [[nodiscard]] virtual std::optional<bool> keysEqual(std::uint32_t a, std::uint32_t b) const = 0;
    // Whether this file and its neighbours were read already and have equal contents.
    [[nodiscard]] virtual bool contentsKnownEqual(std::uint32_t /*position*/) const { return false; }
    // Pairs of files whose contents were scored to find the neighbours.
    [[nodiscard]] virtual std::uint64_t comparisons() const { return 0; }
    // Bytes read so far to find the neighbours, and an upper bound of what there is to read (0: not known).
    [[nodiscard]] virtual std::uint64_t bytesRead() const { return 0; }
    [[nodiscard]] virtual std::uint64_t bytesToRead() const { return 0; }
};

// Every later candidate: the plain walk.
class AllLater final : public Neighbours {
public:
    explicit AllLater(const SortedCandidates& sorted) : sorted_(sorted) {}
    [[nodiscard]] std::uint32_t next(std::uint32_t /*reference*/, std::uint32_t after) const override
    {
        return after + 1 < sorted_.size() ? after + 1 : none;
    }
    [[nodiscard]] std::optional<bool> keysEqual(std::uint32_t a, std::uint32_t b) const override
    {
        return sorted_.classes[a] == sorted_.classes[b];
    }

private:
    const SortedCandidates& sorted_;
};

}  // namespace kelvane
