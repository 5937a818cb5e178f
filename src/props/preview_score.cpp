#include "props/preview_score.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace kelvane {
namespace {

constexpr std::size_t pixelSize = 4;
constexpr std::size_t blocks = 4;
constexpr std::size_t featuresOfBlock = 9;
constexpr int mostPasses = 5;
constexpr std::uint32_t leastSide = 2;

// Of the deviations of red, green and blue of both pictures and of their differences, for each block.
constexpr std::array<std::array<double, featuresOfBlock>, blocks> weights = {{
    {1.7817706726, 0.583813077903, 2.45909660534, 1.99980128691, 2.4132646592, -0.291662127941, -4.49985457329,
     -3.43967401963, -3.05639433092},
    {2.14537613353, 0.521644008431, 2.49688929289, 0.748219899973, 0.510560193392, 0.97372255545, -3.59925577278,
     -2.60083239698, -2.93575861707},
    {1.30803897601, 1.75225326532, 1.12796091626, 1.593204642, 0.736298706616, 0.765402076579, -5.4423753294,
     -0.835872510962, -4.283088882},
    {2.06676843827, 0.916915228108, 1.28216113075, 2.3991878847, 0.321276387282, 1.41212707883, -5.24082882921,
     -2.42870985068, -3.48635633674},
}};
constexpr double bias = 1.99788275977;

constexpr std::size_t largestSide = 34;  // of the largest preview
static_assert(largestSide * largestSide * 100 <= 3 * CachedBitmap::mostWidth * CachedBitmap::mostHeight);

// The values of one colour in a block. Sixteen bits each, so that processors add and multiply eight of them at once.
using Values = std::array<std::int16_t, largestSide * largestSide>;

// Sums of whole numbers are exact in any order. The largest is 34 x 34 x 255 x 255, which 32 bits hold.
struct Sums {
    std::int32_t values = 0;
    std::int32_t squares = 0;

    // The variance is (n x squares - values^2) / n^2.
    [[nodiscard]] double deviation(std::int64_t count) const
    {
        const std::int64_t sum = values;
        return std::sqrt(static_cast<double>(count * squares - sum * sum)) / static_cast<double>(count);
    }
};

Sums sumsOf(const std::int16_t* values, std::size_t count)
{
    Sums sums;
    for (std::size_t i = 0; i < count; ++i) {
        sums.values += values[i];
        sums.squares += values[i] * values[i];
    }
    return sums;
}

struct Block {
    std::array<Values, 3> colours;  // blue, green, red

    void takeRow(const std::byte* pixels, std::size_t from, std::size_t count)
    {
        std::int16_t* const blue = colours[0].data() + from;
        std::int16_t* const green = colours[1].data() + from;
        std::int16_t* const red = colours[2].data() + from;
        for (std::size_t i = 0; i < count; ++i) {
            blue[i] = std::to_integer<std::int16_t>(pixels[pixelSize * i]);
            green[i] = std::to_integer<std::int16_t>(pixels[pixelSize * i + 1]);
            red[i] = std::to_integer<std::int16_t>(pixels[pixelSize * i + 2]);
        }
    }
};

Values differences(const Values& a, const Values& b, std::size_t count)
{
    Values made;
    for (std::size_t i = 0; i < count; ++i)
        made[i] = static_cast<std::int16_t>(std::max(a[i], b[i]) - std::min(a[i], b[i]));
    return made;
}

// What the deviations of a block in both pictures come to.
double weighed(const Block& a, const Block& b, std::size_t pixels, const std::array<double, featuresOfBlock>& by)
{
    double sum = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t colour = 2 - i;  // red comes first
        const Values difference = differences(a.colours[colour], b.colours[colour], pixels);
        const auto feature = [&](const Values& values) {
            return sumsOf(values.data(), pixels).deviation(static_cast<std::int64_t>(pixels)) / 128;
        };
        sum += by[i] * feature(a.colours[colour]) + by[3 + i] * feature(b.colours[colour]) +
               by[6 + i] * feature(difference);
    }
    return sum;
}

// Of a square of 3 % of the area; the root of the whole part has the same whole part.
std::uint32_t sideOfBlocks(const CachedBitmap& preview)
{
    const std::uint32_t area = preview.width() * preview.height() * 3 / 100;
    return static_cast<std::uint32_t>(std::sqrt(area));
}

std::uint32_t place(std::uint32_t room, RandomNumbers& random)
{
    return room > 0 ? random.next() % room : 0;
}

class PreviewPair {
public:
    PreviewPair(const CachedBitmap& a, const CachedBitmap& b, std::uint32_t side)
        : a_(a), b_(b), side_(std::min({side, a.width(), a.height()}))
    {
    }

    [[nodiscard]] double playPass(RandomNumbers& random) const
    {
        double sum = bias;
        for (const auto& by : weights) {
            const std::uint32_t x = place(a_.width() - side_, random);
            const std::uint32_t y = place(a_.height() - side_, random);
            sum += weighed(block(a_, x, y), block(b_, x, y), std::size_t{side_} * side_, by);
        }
        return sum;
    }

private:
    [[nodiscard]] Block block(const CachedBitmap& preview, std::uint32_t x, std::uint32_t y) const
    {
        Block taken;
        for (std::uint32_t row = 0; row < side_; ++row) {
            const std::size_t first = std::size_t{y + row} * preview.width() + x;
            taken.takeRow(preview.pixels().data() + first * pixelSize, std::size_t{row} * side_, side_);
        }
        return taken;
    }

    const CachedBitmap& a_;
    const CachedBitmap& b_;
    const std::uint32_t side_;
};

// Whether so many passes say enough.
bool clear(double total, int passes)
{
    return (passes >= 2 && total < -passes) || (passes >= 3 && total > passes);
}

}  // namespace

std::int32_t comparePreviews(const CachedBitmap& a, const CachedBitmap& b, RandomNumbers& random)
{
    if (a.width() != b.width() || a.height() != b.height())
        return 0;
    const std::uint32_t side = sideOfBlocks(a);
    if (side < leastSide)
        return 0;
    const PreviewPair pair(a, b, side);
    double total = 0;
    int passes = 0;
    do {
        total += pair.playPass(random);
        ++passes;
    } while (passes < mostPasses && !clear(total, passes));
    return static_cast<std::int32_t>(total / passes * 100);
}

}  // namespace kelvane
