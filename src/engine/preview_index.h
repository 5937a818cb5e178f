// Finds the previews that look most like one, among many of the same size.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "props/preview_point.h"

namespace kelvane {

// Another preview, and how far its structure is away; see structureDistance().
struct AlikePreview {
    std::uint32_t number;
    float distance;

    friend bool operator<(const AlikePreview& a, const AlikePreview& b)
    {
        return a.distance != b.distance ? a.distance < b.distance : a.number < b.number;
    }
};

// A tree of boxes around points, whose smallest boxes are gone through point by point (after J. L. Bentley,
// "Multidimensional binary search trees used for associative searching", 1975). Any thread may search it.
class PreviewIndex {
public:
    // Refers to the signatures, each non-null. About 600 bytes a preview beside them. When cancelled, what was built is
    // of no use.
    PreviewIndex(std::span<const PreviewSignature* const> signatures, const CancelFlag& cancel);

    // Of those that are wanted and that a second look agrees on, the `most` nearest ones, nearest first; itself not
    // among them. An empty function wants all.
    [[nodiscard]] std::vector<AlikePreview> nearest(std::uint32_t number, std::size_t most,
                                                    const std::function<bool(std::uint32_t)>& wanted = {}) const;

private:
    struct Box {
        std::array<float, PreviewPoint::count> least, most;
        std::uint32_t begin, end;  // in numbers_
        std::uint32_t second = 0;  // of the two boxes inside, the first one being the next; 0: there are none
    };
    class Search;
    // One coordinate of all points in the order of numbers_, with room behind them, so that a whole box can be taken.
    using Column = std::vector<float>;

    std::uint32_t build(std::uint32_t begin, std::uint32_t end, const CancelFlag& cancel);
    void fillColumns();
    [[nodiscard]] Box boxAround(std::uint32_t begin, std::uint32_t end) const;

    std::vector<PreviewLayout> layouts_;
    std::vector<PreviewPoint> points_;
    std::vector<std::uint32_t> numbers_;  // of those that may be alike to any other
    std::vector<Box> boxes_;
    std::array<Column, PreviewPoint::structure> columns_;
};

}  // namespace kelvane
