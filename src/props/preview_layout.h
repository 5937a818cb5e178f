// How light and dark are laid out in a preview.
#pragma once

#include <cstdint>

#include "props/preview_signature.h"

namespace kelvane {

// Refers to a signature, with what is often asked of it. All from sums of whole numbers, so that it is the same in any
// order of adding.
class PreviewLayout {
public:
    // A deviation of the cells that is noise rather than structure: added to what two previews have in common, it makes
    // flat ones correlate with one another and with nothing else. The same device as in the index of structural
    // similarity (Wang, Bovik, Sheikh and Simoncelli, 2004).
    static constexpr double noise = 1;

    explicit PreviewLayout(const PreviewSignature& signature);

    [[nodiscard]] const PreviewSignature& signature() const { return *signature_; }
    // The sum of its colours; never 0.
    [[nodiscard]] double light() const { return light_; }
    [[nodiscard]] double mean() const { return mean_; }
    [[nodiscard]] double variance() const { return variance_; }
    // What brightness gains from a cell to the next.
    [[nodiscard]] double slopeX() const { return slopeX_; }
    [[nodiscard]] double slopeY() const { return slopeY_; }
    // What is left of the variance without the slopes, and with noise.
    [[nodiscard]] double detail() const { return detail_; }

    // Whether there is too little in it to be alike to anything: see look_limit::leastDeviation.
    [[nodiscard]] bool flat() const { return detail_ < look_limit::leastDeviation * look_limit::leastDeviation; }

    // The mean of the squares of the places of the cells, by column or row, from the middle.
    static constexpr double spread = (PreviewSignature::side * PreviewSignature::side - 1) / 12.0;

private:
    const PreviewSignature* signature_;
    double light_, mean_, variance_, slopeX_, slopeY_, detail_;
};

// See PreviewLook.
[[nodiscard]] double correlation(const PreviewLayout& a, const PreviewLayout& b);

// The second look at the signatures of both.
[[nodiscard]] PreviewLook secondLook(const PreviewLayout& a, const PreviewLayout& b);

}  // namespace kelvane
