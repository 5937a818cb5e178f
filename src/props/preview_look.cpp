#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "props/preview_layout.h"
#include "props/preview_signature.h"

namespace kelvane {
namespace {

// The limits were fitted to about 1,000 photographs, drawings and parts of them, each with ten edited copies, against
// all others that the score takes to be alike. Of copies with much in them 99.4 % pass; most of the rest are so bright
// that more light leaves nothing of them. Of some 150,000 pairs of different ones with much in them fewer than ten do.

// Where there is little structure, colours are nearly all there is: light changes them about as much as it changes
// whatever structure there is.
constexpr double flatDifference = 8;
constexpr double differencePerDeviation = 4;
constexpr double mostDifference = 60;

double differenceOf(const PreviewSignature& a, const PreviewSignature& b, double darkenA, double darkenB)
{
    double sum = 0;
    for (std::size_t i = 0; i < a.colours.size(); ++i)
        sum += std::fabs(a.colours[i] * darkenA - b.colours[i] * darkenB);
    return sum / static_cast<double>(a.colours.size());
}

double allowedDifference(double variance)
{
    return std::min(flatDifference + differencePerDeviation * std::sqrt(variance), mostDifference);
}

bool isWithinLimits(const PreviewLook& look)
{
    return look.correlation >= look_limit::leastCorrelation && look.light <= look_limit::mostLight &&
           look.light >= 1 / look_limit::mostLight && look.evenedDifference <= look_limit::mostEvenedDifference;
}

}  // namespace

PreviewLook secondLook(const PreviewLayout& a, const PreviewLayout& b)
{
    const PreviewSignature& first = a.signature();
    const PreviewSignature& second = b.signature();
    PreviewLook look;
    look.colourDifference = differenceOf(first, second, 1, 1);
    look.light = b.light() / a.light();
    look.evenedDifference = differenceOf(first, second, std::min(look.light, 1.0), std::min(1 / look.light, 1.0));
    look.correlation = correlation(a, b);
    look.flat = a.flat() || b.flat();
    look.agrees = !look.flat && first.width == second.width && first.height == second.height && isWithinLimits(look) &&
                  look.colourDifference <= allowedDifference(std::min(a.variance(), b.variance()));
    return look;
}

PreviewLook secondLook(const PreviewSignature& a, const PreviewSignature& b)
{
    return secondLook(PreviewLayout(a), PreviewLayout(b));
}

}  // namespace kelvane
