#include "props/plain_finger.h"

#include <cmath>
#include <numbers>

namespace kelvane::testing {
namespace {

constexpr double circle = 2 * std::numbers::pi;

std::vector<double> everySecond(std::span<const double> values, std::size_t from)
{
    std::vector<double> half;
    for (std::size_t i = from; i < values.size(); i += 2)
        half.push_back(values[i]);
    return half;
}

std::vector<double> windowed(std::span<const float> frame)
{
    std::vector<double> values;
    float angle = 0;
    for (const float sample : frame) {
        values.push_back(sample * 0.5 * (1 - std::cos(angle)));
        angle += 0.000767084f;
    }
    return values;
}

std::vector<double> magnitudes(std::span<const float> frame)
{
    auto transformed = plainTransform(windowed(frame));
    std::vector<double> sizes;
    for (std::size_t k = 0; k < transformed.size() / 2; ++k)
        sizes.push_back(std::abs(transformed[k]));
    return sizes;
}

double weightedMean(std::span<const double> weights)
{
    double sum = 0;
    double all = 0;
    for (std::size_t k = 0; k < weights.size(); ++k) {
        sum += weights[k] * static_cast<double>(k + 1);
        all += weights[k];
    }
    return all > 0 ? sum / all : 0;
}

double weightedDeviation(std::span<const double> weights)
{
    const double mean = weightedMean(weights);
    double sum = 0;
    double all = 0;
    for (std::size_t k = 0; k < weights.size(); ++k) {
        sum += weights[k] * std::pow(static_cast<double>(k + 1) - mean, 2);
        all += weights[k];
    }
    return all > 0 ? std::sqrt(sum / all) : 0;
}

void standardise(std::vector<double>& series)
{
    const auto count = static_cast<double>(series.size());
    double mean = 0;
    for (const double value : series)
        mean += value / count;
    double variance = 0;
    for (const double value : series)
        variance += (value - mean) * (value - mean) / count;
    for (double& value : series)
        value = (value - mean) / std::sqrt(variance);
}

double meanDistance(std::span<const float> a, std::span<const float> b)
{
    double squares = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        squares += std::pow(static_cast<double>(a[i]) - b[i], 2);
    return std::sqrt(squares) / static_cast<double>(a.size());
}

}  // namespace

std::complex<double> plainTransformAt(std::span<const double> values, std::size_t k)
{
    std::complex<double> sum = 0;
    for (std::size_t n = 0; n < values.size(); ++n)
        sum += values[n] * std::polar(1.0, -circle * static_cast<double>(k * n % values.size()) /
                                               static_cast<double>(values.size()));
    return sum;
}

std::vector<std::complex<double>> plainTransform(std::span<const double> values)
{
    const std::size_t size = values.size();
    if (size == 1)
        return {values[0]};
    const auto even = plainTransform(everySecond(values, 0));
    const auto odd = plainTransform(everySecond(values, 1));
    std::vector<std::complex<double>> all(size);
    for (std::size_t k = 0; k < size / 2; ++k) {
        const auto turned = odd[k] * std::polar(1.0, -circle * static_cast<double>(k) / static_cast<double>(size));
        all[k] = even[k] + turned;
        all[k + size / 2] = even[k] - turned;
    }
    return all;
}

PlainFinger plainFinger(std::span<const float> samples, std::size_t frames)
{
    PlainFinger finger;
    for (std::size_t f = 0; f < frames; ++f) {
        const auto sizes = magnitudes(samples.subspan(f * 7'372, 8'192));
        finger.centroids.push_back(weightedMean(sizes));
        finger.spreads.push_back(weightedDeviation(sizes));
    }
    standardise(finger.centroids);
    standardise(finger.spreads);
    return finger;
}

double plainScore(std::span<const float> a, std::span<const float> b, std::size_t frames)
{
    const double apart =
        (meanDistance(a.first(frames), b.first(frames)) + meanDistance(a.last(frames), b.last(frames))) / 2;
    return apart > 0.9 ? 0 : (1 - apart) * 100;
}

}  // namespace kelvane::testing
