#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "props/preview_signature.h"

namespace kelvane {
namespace {

// Variances below this are no structure but noise: two flat pictures correlate, a flat one and any other do not. The
// same device as in the index of structural similarity (Wang, Bovik, Sheikh and Simoncelli, 2004).
constexpr double noise = 4;

constexpr double leastCorrelation = 0.8;

// Light changes colours as much as it changes what there is of structure; where there is none, colours are all there
// is.
constexpr double flatDifference = 12;
constexpr double differencePerDeviation = 2;
constexpr double mostDifference = 60;

double colourDifference(const PreviewSignature& a, const PreviewSignature& b)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < a.colours.size(); ++i)
        sum += static_cast<std::uint32_t>(std::abs(int{a.colours[i]} - int{b.colours[i]}));
    return static_cast<double>(sum) / static_cast<double>(a.colours.size());
}

// Variances and covariance of the brightness, from sums of whole numbers.
struct Structure {
    double a, b, both;
};

Structure structureOf(const PreviewSignature& a, const PreviewSignature& b)
{
    std::int64_t sumA = 0, sumB = 0, squaresA = 0, squaresB = 0, products = 0;
    const auto n = static_cast<std::int64_t>(a.brightness.size());
    for (std::size_t i = 0; i < a.brightness.size(); ++i) {
        const std::int32_t x = a.brightness[i], y = b.brightness[i];
        sumA += x;
        sumB += y;
        squaresA += x * x;
        squaresB += y * y;
        products += x * y;
    }
    const auto moment = [n](std::int64_t sumOfProducts, std::int64_t first, std::int64_t second) {
        return static_cast<double>(n * sumOfProducts - first * second) / static_cast<double>(n * n);
    };
    return {moment(squaresA, sumA, sumA), moment(squaresB, sumB, sumB), moment(products, sumA, sumB)};
}

double allowedDifference(const Structure& structure)
{
    const double deviation = std::sqrt(std::min(structure.a, structure.b));
    return std::min(flatDifference + differencePerDeviation * deviation, mostDifference);
}

}  // namespace

PreviewLook secondLook(const PreviewSignature& a, const PreviewSignature& b)
{
    PreviewLook look;
    look.colourDifference = colourDifference(a, b);
    const Structure structure = structureOf(a, b);
    look.correlation = (structure.both + noise) / std::sqrt((structure.a + noise) * (structure.b + noise));
    look.agrees = a.width == b.width && a.height == b.height && look.correlation >= leastCorrelation &&
                  look.colourDifference <= allowedDifference(structure);
    return look;
}

}  // namespace kelvane
