#include "platform/linux/media/preview_size.h"

#include <algorithm>

namespace kelvane::linux_os {
namespace {

// From `first` pixels on, lengths are so many pixels apart. The steps of short sides are smaller, so that long strips
// keep their shape too. Each `first` lies on the grid of the next larger step.
struct Step {
    std::uint32_t first;
    std::uint32_t pixels;
};
constexpr Step steps[] = {{74, 8}, {34, 4}, {18, 2}, {1, 1}};

// The length for a side that would be so long, in whole pixels, and may be `most` at most.
std::uint32_t steppedLength(std::uint32_t length, std::uint32_t most)
{
    const Step step = *std::ranges::find_if(steps, [&](const Step& each) { return length >= each.first; });
    const std::uint32_t start = length - (length - step.first) % step.pixels;
    return start + step.pixels > most ? most : start + step.pixels / 2;
}

// The other side, when the one that fills the bounds shrinks from `whole` to `filled`.
std::uint32_t otherSide(std::uint32_t side, std::uint32_t whole, std::uint32_t filled, std::uint32_t most)
{
    const auto exact = static_cast<std::uint32_t>(std::uint64_t{side} * filled / whole);
    return std::min({steppedLength(std::max(exact, 1u), most), side, most});
}

}  // namespace

PictureSize previewSize(PictureSize picture, const PreviewBounds& bounds)
{
    if (picture.width <= bounds.width && picture.height <= bounds.height)
        return picture;
    const bool wide = std::uint64_t{picture.width} * bounds.height >= std::uint64_t{picture.height} * bounds.width;
    if (wide)
        return {bounds.width, otherSide(picture.height, picture.width, bounds.width, bounds.height)};
    return {otherSide(picture.width, picture.height, bounds.height, bounds.width), bounds.height};
}

}  // namespace kelvane::linux_os
