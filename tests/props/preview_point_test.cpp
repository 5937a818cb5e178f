#include "props/preview_point.h"

#include <gtest/gtest.h>

#include <cmath>

#include "props/made_up_previews.h"

namespace kelvane {
namespace {

using testing::Colour;
using testing::drawnPreview;
using testing::Scene;

double structureBetween(const PreviewPoint& a, const PreviewPoint& b)
{
    double sum = 0;
    for (std::size_t i = 0; i < PreviewPoint::structure; ++i)
        sum += (a.at[i] - b.at[i]) * (a.at[i] - b.at[i]);
    return sum;
}

// Random pictures from flat to full of contrast, in any light: whatever the look agrees on is within the window of
// both, else an index would leave it out.
TEST(PreviewPoint, IsNearWhateverTheLookAgreesOn)
{
    std::mt19937 random(5);
    const auto part = [&] { return static_cast<double>(random() % 1000) / 1000; };
    int agreed = 0;
    for (unsigned i = 0; i < 1500; ++i) {
        const Scene scene(i), other(i + 5000);
        const double contrast = part() * part(), mixed = part() * part() * 0.6, light = 0.7 + part() * 0.8;
        const int grey = static_cast<int>(part() * 200);
        const auto draw = [&](double share, double lit) {
            return PreviewSignature::of(*drawnPreview(32, 32, [&](std::uint32_t x, std::uint32_t y) {
                const Colour one = scene.at(x / 32.0, y / 32.0), two = other.at(x / 32.0, y / 32.0);
                const auto blend = [&](int a, int b) {
                    return static_cast<int>(lit * (grey + contrast * (a * (1 - share) + b * share)));
                };
                return Colour{blend(one.red, two.red), blend(one.green, two.green), blend(one.blue, two.blue)};
            }));
        };
        const PreviewSignature a = draw(0, 1), b = draw(mixed, light);
        const PreviewLayout first(a), second(b);
        const PreviewPoint p(first), q(second);
        const PreviewLook look = secondLook(a, b);
        ASSERT_LE(structureBetween(p, q), structureDistance(look.correlation) + 1e-4) << i;
        if (!look.agrees)
            continue;
        ++agreed;
        for (const PreviewWindow& window : {PreviewWindow(first), PreviewWindow(second)}) {
            EXPECT_LE(structureBetween(p, q), window.structure);
            EXPECT_LE(std::fabs(p.at[PreviewPoint::light] - q.at[PreviewPoint::light]), window.light);
            EXPECT_LE(std::fabs(p.at[PreviewPoint::shares] - q.at[PreviewPoint::shares]), window.share);
            EXPECT_LE(std::fabs(p.at[PreviewPoint::shares + 1] - q.at[PreviewPoint::shares + 1]), window.share);
        }
    }
    EXPECT_GT(agreed, 300);
    EXPECT_LT(agreed, 1300);
}

}  // namespace
}  // namespace kelvane
