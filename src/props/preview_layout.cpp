#include "props/preview_layout.h"

#include <cmath>
#include <numeric>

namespace kelvane {
namespace {

constexpr auto cellsAlong = static_cast<std::int64_t>(PreviewSignature::side);
constexpr std::int64_t cells = cellsAlong * cellsAlong;

double perCell(std::int64_t sum)
{
    return static_cast<double>(sum) / cells;
}

}  // namespace

PreviewLayout::PreviewLayout(const PreviewSignature& signature) : signature_(&signature)
{
    std::int64_t sum = 0, squares = 0, alongX = 0, alongY = 0;
    for (std::int64_t i = 0; i < cells; ++i) {
        const std::int64_t value = signature.brightness[static_cast<std::size_t>(i)];
        sum += value;
        squares += value * value;
        alongX += value * (2 * (i % cellsAlong) - (cellsAlong - 1));  // twice the place, from the middle
        alongY += value * (2 * (i / cellsAlong) - (cellsAlong - 1));
    }
    const auto colours = std::accumulate(signature.colours.begin(), signature.colours.end(), std::int64_t{0});
    light_ = static_cast<double>(colours + static_cast<std::int64_t>(signature.colours.size()));
    mean_ = perCell(sum);
    variance_ = perCell(squares) - mean_ * mean_;
    slopeX_ = perCell(alongX) / 2 / spread;
    slopeY_ = perCell(alongY) / 2 / spread;
    // Places by column, by row, and the mean are at right angles to one another: each takes its own part away.
    detail_ = variance_ - (slopeX_ * slopeX_ + slopeY_ * slopeY_) * spread + noise;
}

double correlation(const PreviewLayout& a, const PreviewLayout& b)
{
    std::int32_t products = 0;
    for (std::size_t i = 0; i < a.signature().brightness.size(); ++i)
        products += std::int32_t{a.signature().brightness[i]} * b.signature().brightness[i];
    const double slopes = (a.slopeX() * b.slopeX() + a.slopeY() * b.slopeY()) * PreviewLayout::spread;
    const double common = perCell(products) - a.mean() * b.mean() - slopes + PreviewLayout::noise;
    return common / std::sqrt(a.detail() * b.detail());
}

}  // namespace kelvane
