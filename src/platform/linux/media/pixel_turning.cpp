#include "platform/linux/media/pixel_turning.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kelvane::linux_os {
namespace {

constexpr std::size_t pixelBytes = 4;

// Which steps an orientation consists of: first the sides are swapped, then the rest.
struct Turn {
    bool swapSides = false;
    bool mirrorAcross = false;
    bool mirrorDown = false;
};

constexpr Turn turns[] = {{},
                          {},
                          {false, true, false},
                          {false, true, true},
                          {false, false, true},
                          {true, false, false},
                          {true, true, false},
                          {true, true, true},
                          {true, false, true}};

Turn turnFor(int orientation)
{
    return orientation >= 1 && orientation <= 8 ? turns[orientation] : Turn{};
}

}  // namespace

bool swapsSides(int orientation)
{
    return turnFor(orientation).swapSides;
}

DecodedPicture turned(DecodedPicture picture, int orientation)
{
    const Turn turn = turnFor(orientation);
    const std::size_t width = turn.swapSides ? picture.height : picture.width;
    const std::size_t height = turn.swapSides ? picture.width : picture.height;
    std::vector<std::byte> out(picture.pixels.size());
    for (std::size_t row = 0; row < height; ++row)
        for (std::size_t column = 0; column < width; ++column) {
            std::size_t x = turn.mirrorAcross ? width - 1 - column : column;
            std::size_t y = turn.mirrorDown ? height - 1 - row : row;
            if (turn.swapSides)
                std::swap(x, y);
            std::copy_n(&picture.pixels[(y * picture.width + x) * pixelBytes], pixelBytes,
                        &out[(row * width + column) * pixelBytes]);
        }
    picture.width = static_cast<std::uint32_t>(width);
    picture.height = static_cast<std::uint32_t>(height);
    picture.pixels = std::move(out);
    return picture;
}

}  // namespace kelvane::linux_os
