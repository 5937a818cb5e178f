// Similar documents found ahead of the group walk, by workers.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "base/cancel.h"
#include "engine/document_pairs.h"
#include "engine/nearest_ahead.h"

namespace kelvane {

// The documents by position, in ascending order of their sizes.
struct OrderedDocuments {
    std::vector<Ref<const SimDocDescriptor>> descriptors;  // null: there is none
    std::vector<std::uint32_t> types;                      // equal for files that may match; empty: all may
};

// The nearest match of each is found ahead; further ones the walk compares itself.
class DocumentNeighbours final : public Neighbours {
public:
    // Whether a pair may match at all. Thread-safe; empty: every pair is compared.
    using PairFilter = std::function<bool(std::uint32_t a, std::uint32_t b)>;

    DocumentNeighbours(OrderedDocuments documents, const DocumentPairs& pairs, PairFilter filter, unsigned threads,
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
    [[nodiscard]] std::optional<ContentScore> knownScore(std::uint32_t reference, std::uint32_t position) const override
    {
        return ahead_.score(reference, position);
    }
    [[nodiscard]] std::uint64_t comparisons() const override { return comparisons_.load(std::memory_order_relaxed); }

private:
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(documents_.descriptors.size()); }
    // The nearest position behind `after` that nothing but the score may part from the reference, or none.
    [[nodiscard]] std::uint32_t comparable(std::uint32_t reference, std::uint32_t after) const;
    [[nodiscard]] NearestAhead::Match findNearest(std::uint32_t reference);

    const OrderedDocuments documents_;
    const DocumentPairs pairs_;
    const PairFilter filter_;
    const CancelFlag& cancel_;
    std::atomic<std::uint64_t> comparisons_{0};
    NearestAhead ahead_;  // last: its threads use everything above
};

}  // namespace kelvane
