#include "engine/preview_index.h"

#include <algorithm>
#include <numeric>

namespace kelvane {
namespace {

constexpr std::uint32_t smallestBox = 8;

// So many previews are looked at for one, the likeliest first: where boxes tell nothing apart (noise is like that),
// time stays in proportion to the number of pictures, and a far relative may be missed. Never reached by fewer of a
// size.
constexpr std::uint32_t mostLookedAt = 10'000;

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
        pending_.push_back({0, 0});
        while (!pending_.empty() && lookedAt_ < mostLookedAt) {
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
            for (std::uint32_t i = box.begin; i < box.end; ++i)
                look(index_.numbers_[i]);
            lookedAt_ += box.end - box.begin;
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

    void look(std::uint32_t other)
    {
        const auto& at = index_.points_[other].at;
        if (other == number_ || distance(at, at) > limit_ || (wanted_ && !wanted_(other)))
            return;
        const PreviewLook seen = secondLook(index_.layouts_[number_], index_.layouts_[other]);
        if (!seen.agrees)
            return;
        const AlikePreview alike{other, static_cast<float>(structureDistance(seen.correlation))};
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
    std::uint32_t lookedAt_ = 0;
    std::vector<Pending> pending_;
    std::vector<AlikePreview> found_;  // a heap, the farthest first
};

PreviewIndex::PreviewIndex(std::span<const PreviewSignature* const> signatures) : numbers_(signatures.size())
{
    layouts_.reserve(signatures.size());
    points_.reserve(signatures.size());
    for (const PreviewSignature* signature : signatures)
        points_.emplace_back(layouts_.emplace_back(*signature));
    std::iota(numbers_.begin(), numbers_.end(), 0);
    if (!numbers_.empty())
        build(0, static_cast<std::uint32_t>(numbers_.size()));
}

std::vector<AlikePreview> PreviewIndex::nearest(std::uint32_t number, std::size_t most,
                                                const std::function<bool(std::uint32_t)>& wanted) const
{
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
std::uint32_t PreviewIndex::build(std::uint32_t begin, std::uint32_t end)
{
    const auto made = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back(boxAround(begin, end));
    if (end - begin <= smallestBox)
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
    build(begin, middle);
    const std::uint32_t second = build(middle, end);
    boxes_[made].second = second;
    return made;
}

}  // namespace kelvane
