#include "props/preview_point.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace kelvane {
namespace {

constexpr std::size_t pointsAlong = PreviewSignature::side;
constexpr double roundingSlack = 1e-4;

// The waves of the two-dimensional discrete cosine transform that most of a picture's structure is in.
constexpr std::array<std::pair<int, int>, PreviewPoint::structure - 1> waves = {
    {{1, 1}, {0, 2}, {2, 0}, {1, 2}, {2, 1}, {2, 2}, {0, 1}, {1, 0}, {0, 3}, {3, 0}, {1, 3}, {3, 1}, {0, 4}}};

using Wave = std::array<double, pointsAlong>;

// Of length 1, as are their products of one along each side, which are at right angles to one another.
std::array<Wave, 5> makeWaves()
{
    std::array<Wave, 5> made;
    for (std::size_t k = 0; k < made.size(); ++k)
        for (std::size_t i = 0; i < pointsAlong; ++i)
            made[k][i] =
                std::sqrt((k == 0 ? 1.0 : 2.0) / pointsAlong) *
                std::cos(std::numbers::pi * static_cast<double>(k) * (static_cast<double>(i) + 0.5) / pointsAlong);
    return made;
}

double along(const std::array<double, pointsAlong * pointsAlong>& detail, const Wave& x, const Wave& y)
{
    double sum = 0;
    for (std::size_t row = 0; row < pointsAlong; ++row) {
        double ofRow = 0;
        for (std::size_t column = 0; column < pointsAlong; ++column)
            ofRow += detail[row * pointsAlong + column] * x[column];
        sum += ofRow * y[row];
    }
    return sum;
}

std::array<double, pointsAlong * pointsAlong> detailOf(const PreviewLayout& layout)
{
    std::array<double, pointsAlong * pointsAlong> detail;
    constexpr double middle = (pointsAlong - 1) / 2.0;
    for (std::size_t i = 0; i < detail.size(); ++i) {
        const double x = static_cast<double>(i % pointsAlong) - middle,
                     y = static_cast<double>(i / pointsAlong) - middle;
        detail[i] = layout.signature().brightness[i] - layout.mean() - layout.slopeX() * x - layout.slopeY() * y;
    }
    return detail;
}

// The part that one colour has of all light.
double shareOf(const PreviewLayout& layout, std::size_t colour)
{
    double sum = 0;
    for (std::size_t i = colour; i < layout.signature().colours.size(); i += 3)
        sum += layout.signature().colours[i];
    return sum / layout.light();
}

}  // namespace

// A structure is a vector of the detail of all cells and one more number, the noise, brought to the length 1: its
// product with another one is their correlation. The part of it that the waves see, and the noise, are kept.
PreviewPoint::PreviewPoint(const PreviewLayout& layout)
{
    static const std::array<Wave, 5> known = makeWaves();
    const auto detail = detailOf(layout);
    const double length = std::sqrt(layout.detail() * static_cast<double>(detail.size()));
    for (std::size_t i = 0; i < waves.size(); ++i) {
        const auto [x, y] = waves[i];
        at[i] = static_cast<float>(
            along(detail, known[static_cast<std::size_t>(x)], known[static_cast<std::size_t>(y)]) / length);
    }
    at[waves.size()] = static_cast<float>(std::sqrt(PreviewLayout::noise / layout.detail()));
    at[light] = static_cast<float>(std::log(layout.light()));
    at[shares] = static_cast<float>(shareOf(layout, 0));
    at[shares + 1] = static_cast<float>(shareOf(layout, 2));
}

// Of previews that agree, the darker one has no less light than this one by the most that light may differ; and the
// evened difference, of one colour alone, is that of its shares of the darker one's light.
PreviewWindow::PreviewWindow(const PreviewLayout& layout)
    : structure(static_cast<float>(structureDistance(look_limit::leastCorrelation) + roundingSlack)),
      light(static_cast<float>(std::log(look_limit::mostLight) + roundingSlack)),
      share(static_cast<float>(look_limit::mostEvenedDifference *
                                   static_cast<double>(layout.signature().colours.size()) * look_limit::mostLight /
                                   layout.light() +
                               roundingSlack))
{
}

}  // namespace kelvane
