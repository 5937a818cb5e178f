#include "props/sound_spectrum.h"

#include <array>
#include <cmath>
#include <complex>

#include <eigen3/unsupported/Eigen/FFT>

#include "props/mp3_finger.h"

namespace kelvane {
namespace {

constexpr std::size_t frameSize = SongOpening::frameSize;
constexpr std::size_t bins = frameSize / 2;

// A Hann window. Its angle grows by a rounded step in single precision: fingerprints are compared across programs and
// runs, so that the same small errors belong to it.
std::vector<double> hannWindow()
{
    constexpr float step = 0.000767084f;
    std::vector<double> window(frameSize);
    float angle = 0;
    for (double& weight : window) {
        weight = 0.5 * (1 - std::cos(static_cast<double>(angle)));
        angle += step;
    }
    return window;
}

struct Shape {
    double centroid = 0;
    double spread = 0;
};

// The mean of the bins' numbers weighted by their magnitudes, and the deviation from it, in one go (West, "Updating
// mean and variance estimates", Communications of the ACM 22, 1979).
Shape shapeOf(std::span<const std::complex<double>> spectrum)
{
    double weights = 0;
    double mean = 0;
    double squares = 0;
    double number = 0;
    for (const std::complex<double>& value : spectrum) {
        ++number;
        const double magnitude = std::sqrt(value.real() * value.real() + value.imag() * value.imag());
        if (!(magnitude > 0))
            continue;
        weights += magnitude;
        const double distance = magnitude * (number - mean);
        mean += distance / weights;
        squares += distance * (number - mean);
    }
    return weights > 0 ? Shape{mean, std::sqrt(squares / weights)} : Shape{};
}

}  // namespace

SpectralShapes spectralShapes(std::span<const float> samples, std::size_t frames)
{
    const std::vector<double> window = hannWindow();
    Eigen::FFT<double> transform;
    transform.SetFlag(Eigen::FFT<double>::HalfSpectrum);
    std::vector<double> frame(frameSize);
    std::vector<std::complex<double>> spectrum;
    SpectralShapes shapes;
    for (std::size_t f = 0; f < frames; ++f) {
        const auto piece = samples.subspan(f * SongOpening::frameStep, frameSize);
        for (std::size_t n = 0; n < frameSize; ++n)
            frame[n] = piece[n] * window[n];
        transform.fwd(spectrum, frame);
        const Shape shape = shapeOf(std::span(spectrum).first(bins));
        shapes.centroids.push_back(shape.centroid);
        shapes.spreads.push_back(shape.spread);
    }
    return shapes;
}

}  // namespace kelvane
