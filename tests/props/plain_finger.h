// Fingerprints of sounds computed the plain way, from textbook formulas, to hold the fast ones against.
#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace kelvane::testing {

// Sum of x[n] e^(-2 pi i k n / N), term by term.
[[nodiscard]] std::complex<double> plainTransformAt(std::span<const double> values, std::size_t k);
// All of them, by halving (Cooley and Tukey, Mathematics of Computation 19, 1965). The size is a power of two.
[[nodiscard]] std::vector<std::complex<double>> plainTransform(std::span<const double> values);

struct PlainFinger {
    std::vector<double> centroids;  // standardised
    std::vector<double> spreads;
};

// Without any trimming: the frames begin with the first sample.
[[nodiscard]] PlainFinger plainFinger(std::span<const float> samples, std::size_t frames);
[[nodiscard]] double plainScore(std::span<const float> a, std::span<const float> b, std::size_t frames);

}  // namespace kelvane::testing
