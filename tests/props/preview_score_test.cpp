#include "props/preview_score.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "props/made_up_previews.h"

namespace kelvane {
namespace {

using testing::drawnPreview;
using testing::flatPreview;
using testing::noisyPreview;
using testing::Scene;

// The model with its statistics taken step by step, pixel after pixel (B. P. Welford, Technometrics 4/3, 1962).
class PlainComparison {
public:
    PlainComparison(const CachedBitmap& a, const CachedBitmap& b, RandomNumbers& random) : a_(a), b_(b), random_(random)
    {
    }

    double score()
    {
        const int width = static_cast<int>(a_.width()), height = static_cast<int>(a_.height());
        if (a_.width() != b_.width() || a_.height() != b_.height())
            return 0;
        int side = static_cast<int>(std::sqrt(width * height * 3 / 100.0));
        if (side < 2)
            return 0;
        side = std::min({side, width, height});
        double total = 0;
        for (int finished = 0; finished < 5; ++finished) {
            total += pass(side);
            played = finished + 1;
            if (finished >= 1 && total < -(finished + 1))
                break;
            if (finished >= 2 && total > finished + 1)
                break;
        }
        return total / played * 100;
    }

    int played = 0;

private:
    double pass(int side)
    {
        static constexpr double weights[36] = {
            1.7817706726,   0.583813077903,  2.45909660534,  1.99980128691,  2.4132646592,   -0.291662127941,
            -4.49985457329, -3.43967401963,  -3.05639433092, 2.14537613353,  0.521644008431, 2.49688929289,
            0.748219899973, 0.510560193392,  0.97372255545,  -3.59925577278, -2.60083239698, -2.93575861707,
            1.30803897601,  1.75225326532,   1.12796091626,  1.593204642,    0.736298706616, 0.765402076579,
            -5.4423753294,  -0.835872510962, -4.283088882,   2.06676843827,  0.916915228108, 1.28216113075,
            2.3991878847,   0.321276387282,  1.41212707883,  -5.24082882921, -2.42870985068, -3.48635633674};
        double sum = 1.99788275977;
        for (int block = 0; block < 4; ++block) {
            const int roomX = static_cast<int>(a_.width()) - side, roomY = static_cast<int>(a_.height()) - side;
            const int x = roomX > 0 ? static_cast<int>(random_.next() % static_cast<unsigned>(roomX)) : 0;
            const int y = roomY > 0 ? static_cast<int>(random_.next() % static_cast<unsigned>(roomY)) : 0;
            double mean[9]{}, squares[9]{};
            int count = 0;
            for (int row = y; row < y + side; ++row)
                for (int column = x; column < x + side; ++column) {
                    ++count;
                    for (int i = 0; i < 9; ++i) {
                        const double value = valueAt(column, row, i);
                        const double delta = value - mean[i];
                        mean[i] += delta / count;
                        squares[i] += delta * (value - mean[i]);
                    }
                }
            for (int i = 0; i < 9; ++i)
                sum += weights[9 * block + i] * std::sqrt(squares[i] / count) / 128;
        }
        return sum;
    }

    double valueAt(int x, int y, int feature) const
    {
        const std::size_t pixel = static_cast<std::size_t>(y) * a_.width() + static_cast<std::size_t>(x);
        const std::size_t at = 4 * pixel + 2 - static_cast<std::size_t>(feature % 3);
        const int first = std::to_integer<int>(a_.pixels()[at]), second = std::to_integer<int>(b_.pixels()[at]);
        return feature < 3 ? first : feature < 6 ? second : std::abs(first - second);
    }

    const CachedBitmap& a_;
    const CachedBitmap& b_;
    RandomNumbers& random_;
};

class CountedNumbers final : public RandomNumbers {
public:
    explicit CountedNumbers(std::uint64_t seed) : numbers_(seed) {}
    std::uint32_t next() noexcept override
    {
        ++drawn;
        return numbers_.next();
    }
    int drawn = 0;

private:
    MinimalStandard numbers_;
};

void expectAsPlain(const CachedBitmap& a, const CachedBitmap& b, std::uint64_t seed)
{
    CountedNumbers fast(seed), plain(seed);
    const std::int32_t score = comparePreviews(a, b, fast);
    const double exact = PlainComparison(a, b, plain).score();
    EXPECT_EQ(fast.drawn, plain.drawn) << a.width() << 'x' << a.height();
    // Truncation may fall either way where the sums differ in their last bits.
    EXPECT_LE(std::fabs(score - exact), 1.000001) << a.width() << 'x' << a.height();
    if (std::fabs(exact - std::round(exact)) > 1e-6) {
        EXPECT_EQ(score, static_cast<std::int32_t>(exact));
    }
}

TEST(PreviewScore, IsThatOfTheStatisticsTakenStepByStep)
{
    std::mt19937 random(3);
    for (unsigned i = 0; i < 60; ++i) {
        const auto width = static_cast<std::uint32_t>(1 + random() % 200),
                   height = static_cast<std::uint32_t>(1 + random() % 200);
        const Scene scene(i), other(i + 1000);
        const auto first = scene.preview(width, height), lit = scene.preview(width, height, 1.2);
        expectAsPlain(*first, *lit, i);
        expectAsPlain(*first, *other.preview(width, height), i);
        expectAsPlain(*noisyPreview(i, width, height), *noisyPreview(i + (i % 3), width, height), i);
    }
    expectAsPlain(*noisyPreview(1, 200, 200), *noisyPreview(2, 200, 200), 5);
    expectAsPlain(*flatPreview({255, 255, 255}, 200, 200), *noisyPreview(2, 200, 200), 5);
}

Ref<CachedBitmap> specks(unsigned seed)
{
    std::mt19937 random(seed);
    return drawnPreview(200, 150, [&](auto, auto) {
        const int value = random() % 2 == 0 ? 0 : 255;
        return testing::Colour{value, value, value};
    });
}

// A pass draws eight numbers.
TEST(PreviewScore, StopsWhereTheOutcomeIsClear)
{
    const Scene scene(1);
    const auto preview = scene.preview();
    CountedNumbers same(1);
    EXPECT_GT(comparePreviews(*preview, *preview, same), 200);
    EXPECT_EQ(same.drawn, 3 * 8);
    CountedNumbers different(1);
    EXPECT_LT(comparePreviews(*specks(1), *specks(2), different), -100);
    EXPECT_EQ(different.drawn, 2 * 8);
    CountedNumbers doubtful(1);
    const std::int32_t score = comparePreviews(*noisyPreview(1, 200, 150), *noisyPreview(2, 200, 150), doubtful);
    EXPECT_GT(score, -100);
    EXPECT_LT(score, 100);
    EXPECT_EQ(doubtful.drawn, 5 * 8);
}

TEST(PreviewScore, IsNothingForDifferentSizesAndTinyPreviews)
{
    MinimalStandard random(1);
    EXPECT_EQ(comparePreviews(*flatPreview({}, 200, 150), *flatPreview({}, 150, 200), random), 0);
    EXPECT_EQ(comparePreviews(*flatPreview({}, 4, 4), *flatPreview({}, 4, 4), random), 0);
    EXPECT_EQ(comparePreviews(*flatPreview({}, 11, 12), *flatPreview({}, 11, 12), random), 0);
    EXPECT_EQ(comparePreviews(*flatPreview({}, 12, 12), *flatPreview({}, 12, 12), random), 199);
    EXPECT_EQ(comparePreviews(*flatPreview({255, 0, 0}), *flatPreview({0, 0, 90}), random), 199);
}

}  // namespace
}  // namespace kelvane
