#include "engine/preview_index.h"

#include <algorithm>

namespace kelvane {
namespace {

// The structures of unrelated previews lie about equally far from one another in all directions, so that boxes part
// but light and colours well: what is left is faster gone through than divided further.
constexpr std::uint32_t smallestBox = 64;

// So many points are passed for one, and so many of their previews looked at, the likeliest first: where nothing tells
// them apart (noise is like that), time stays in proportion to the number of pictures, and a far relative may be
// missed. Never reached where no more than so many are of a size.
constexpr std::uint32_t mostPassed = 100'000;
constexpr std::uint32_t mostLookedAt = 4'000;

// So that the sides of boxes compare: about what a look allows in each direction.
float scaleOf(std::size_t direction)
{
    if (direction < PreviewPoint::structure)
        return 1;
    return direction == PreviewPoint::light ? 2 : 10;
}

float beyond(float value, float least, float most)
{
    return std::max({0.0f, least - value, value - most});
}

}  // namespace

// One search: boxes nearest first, each left out where nothing in it can be among what was found.
class PreviewIndex::Search {
public:
    Search(const PreviewIndex& index, std::uint32_t number, std::size_t most,
           const std::function<bool(std::uint32_t)>& wanted)
        : index_(index),
          number_(number),
          most_(most),
          wanted_(wanted),
          point_(index.points_[number]),
          window_(index.layouts_[number]),
          limit_(window_.structure)
    {
    }

    std::vector<AlikePreview> run()
    {
        if (!index_.boxes_.empty())
            pending_.push_back({0, 0});
        while (!pending_.empty() && passed_ < mostPassed && lookedAt_ < mostLookedAt) {
            const Pending next = pending_.back();
            pending_.pop_back();
            if (next.distance <= limit_)
                open(index_.boxes_[next.box], next.box);
        }
        std::sort_heap(found_.begin(), found_.end());
        return std::move(found_);
    }

private:
    struct Pending {
        std::uint32_t box;
        float distance;
    };

    void open(const Box& box, std::uint32_t number)
    {
        if (box.second == 0) {
            passThrough(box);
            return;
        }
        Pending first{number + 1, distanceTo(number + 1)}, second{box.second, distanceTo(box.second)};
        if (first.distance < second.distance)
            std::swap(first, second);
        pending_.push_back(first);
        pending_.push_back(second);
    }

    // Beyond any limit where the light or the colours of nothing in the box are allowed.
    [[nodiscard]] float distanceTo(std::uint32_t number) const
    {
        const Box& box = index_.boxes_[number];
        return distance(box.least, box.most);
    }

    [[nodiscard]] float distance(const std::array<float, PreviewPoint::count>& least,
                                 const std::array<float, PreviewPoint::count>& most) const
    {
        constexpr std::size_t light = PreviewPoint::light;
        if (beyond(point_.at[light], least[light], most[light]) > window_.light)
            return tooFar;
        for (std::size_t i = PreviewPoint::shares; i < PreviewPoint::count; ++i)
            if (beyond(point_.at[i], least[i], most[i]) > window_.share)
                return tooFar;
        float sum = 0;
        for (std::size_t i = 0; i < PreviewPoint::structure; ++i) {
            const float outside = beyond(point_.at[i], least[i], most[i]);
            sum += outside * outside;
        }
        return sum;
    }

    // All of them at once, in loops of a fixed length, which compilers turn into few instructions.
    void passThrough(const Box& box)
    {
        std::array<float, smallestBox> distances{};
        for (std::size_t i = 0; i < PreviewPoint::structure; ++i) {
            const float* const values = index_.columns_[i].data() + box.begin;
            for (std::size_t k = 0; k < smallestBox; ++k)
                distances[k] += (values[k] - point_.at[i]) * (values[k] - point_.at[i]);
        }
        const std::uint32_t count = box.end - box.begin;
        for (std::uint32_t k = 0; k < count; ++k)
            if (distances[k] <= limit_)
                look(index_.numbers_[box.begin + k]);
        passed_ += count;
    }

    void look(std::uint32_t other)
    {
        const auto& at = index_.points_[other].at;
        if (other == number_ || distance(at, at) > limit_ || (wanted_ && !wanted_(other)))
            return;
        ++lookedAt_;
        const PreviewLayout &mine = index_.layouts_[number_], &its = index_.layouts_[other];
        const AlikePreview alike{other, static_cast<float>(structureDistance(correlation(mine, its)))};
        if (alike.distance <= limit_ && secondLook(mine, its).agrees)
            add(alike);
    }

    void add(const AlikePreview& alike)
    {
        if (found_.size() == most_) {
            if (!(alike < found_.front()))
                return;
            std::pop_heap(found_.begin(), found_.end());
            found_.pop_back();
        }
        found_.push_back(alike);
        std::push_heap(found_.begin(), found_.end());
        if (found_.size() == most_)
            limit_ = std::min(window_.structure, found_.front().distance + slack);
    }

    static constexpr float tooFar = 9;
    static constexpr float slack = 1e-4f;

    const PreviewIndex& index_;
    const std::uint32_t number_;
    const std::size_t most_;
    const std::function<bool(std::uint32_t)>& wanted_;
    const PreviewPoint& point_;
    const PreviewWindow window_;
    float limit_;
    std::uint32_t passed_ = 0, lookedAt_ = 0;
    std::vector<Pending> pending_;
    std::vector<AlikePreview> found_;  // a heap, the farthest first
};

PreviewIndex::PreviewIndex(std::span<const PreviewSignature* const> signatures, const CancelFlag& cancel)
{
    layouts_.reserve(signatures.size());
    points_.reserve(signatures.size());
    for (const PreviewSignature* signature : signatures) {
        if (cancel.cancelled())
            return;
        const PreviewLayout& layout = layouts_.emplace_back(*signature);
        points_.emplace_back(layout);
        if (!layout.flat())
            numbers_.push_back(static_cast<std::uint32_t>(layouts_.size() - 1));
    }
    if (!numbers_.empty())
        build(0, static_cast<std::uint32_t>(numbers_.size()), cancel);
    if (!cancel.cancelled())
        fillColumns();
}

void PreviewIndex::fillColumns()
{
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].reserve(numbers_.size() + smallestBox);
        for (const std::uint32_t number : numbers_)
            columns_[i].push_back(points_[number].at[i]);
        columns_[i].resize(numbers_.size() + smallestBox);
    }
}

std::vector<AlikePreview> PreviewIndex::nearest(std::uint32_t number, std::size_t most,
                                                const std::function<bool(std::uint32_t)>& wanted) const
{
    if (layouts_[number].flat())
        return {};
    return Search(*this, number, most, wanted).run();
}

PreviewIndex::Box PreviewIndex::boxAround(std::uint32_t begin, std::uint32_t end) const
{
    Box box{points_[numbers_[begin]].at, points_[numbers_[begin]].at, begin, end};
    for (std::uint32_t i = begin; i < end; ++i)
        for (std::size_t direction = 0; direction < PreviewPoint::count; ++direction) {
            const float value = points_[numbers_[i]].at[direction];
            box.least[direction] = std::min(box.least[direction], value);
            box.most[direction] = std::max(box.most[direction], value);
        }
    return box;
}

// As deep as the logarithm of their number, since the halves are equal.
std::uint32_t PreviewIndex::build(std::uint32_t begin, std::uint32_t end, const CancelFlag& cancel)
{
    const auto made = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back(boxAround(begin, end));
    if (end - begin <= smallestBox || cancel.cancelled())
        return made;
    std::size_t widest = 0;
    const auto width = [&](std::size_t direction) {
        return (boxes_[made].most[direction] - boxes_[made].least[direction]) * scaleOf(direction);
    };
    for (std::size_t direction = 1; direction < PreviewPoint::count; ++direction)
        if (width(direction) > width(widest))
            widest = direction;
    const std::uint32_t middle = begin + (end - begin) / 2;
    std::nth_element(numbers_.begin() + begin, numbers_.begin() + middle, numbers_.begin() + end,
                     [&](std::uint32_t a, std::uint32_t b) {
                         const float x = points_[a].at[widest], y = points_[b].at[widest];
                         return x != y ? x < y : a < b;
                     });
    build(begin, middle, cancel);
    const std::uint32_t second = build(middle, end, cancel);
    boxes_[made].second = second;
    return made;
}

}  // namespace kelvane
