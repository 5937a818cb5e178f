#include "platform/linux/media/pixel_scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace kelvane::linux_os {
namespace {

constexpr std::size_t channels = 3;
constexpr double filterRadius = 2;

double filter(double distance)
{
    const double x = std::abs(distance);
    if (x < 1)
        return (7 * x * x * x - 12 * x * x + 16.0 / 3) / 6;
    if (x < filterRadius)
        return (-7.0 / 3 * x * x * x + 12 * x * x - 20 * x + 32.0 / 3) / 6;
    return 0;
}

// What one sample is made of: source samples from `first` on, and how much each of them counts.
struct Share {
    std::size_t first = 0;
    std::vector<float> weights;
};

Share shareOf(std::uint32_t position, double ratio, std::uint32_t samples)
{
    const double widening = std::max(1.0, ratio);
    const double middle = (position + 0.5) * ratio - 0.5;
    const double reach = filterRadius * widening;
    const auto first = static_cast<std::int64_t>(std::ceil(middle - reach));
    const auto last = static_cast<std::int64_t>(std::floor(middle + reach));
    const auto inside = [&](std::int64_t at) { return std::clamp<std::int64_t>(at, 0, std::int64_t{samples} - 1); };
    Share share;
    share.first = static_cast<std::size_t>(inside(first));
    share.weights.resize(static_cast<std::size_t>(inside(last)) - share.first + 1);
    double sum = 0;
    for (std::int64_t at = first; at <= last; ++at)
        sum += filter((static_cast<double>(at) - middle) / widening);
    // Beyond the edges, the outermost samples go on.
    for (std::int64_t at = first; at <= last; ++at)
        share.weights[static_cast<std::size_t>(inside(at)) - share.first] +=
            static_cast<float>(filter((static_cast<double>(at) - middle) / widening) / sum);
    return share;
}

std::vector<Share> shares(std::uint32_t from, double covered, std::uint32_t to)
{
    std::vector<Share> all;
    for (std::uint32_t position = 0; position < to; ++position)
        all.push_back(shareOf(position, covered / to, from));
    return all;
}

// One pixel out of several that lie `stride` samples apart.
template <class Sample>
std::array<float, channels> mix(const Sample* start, std::size_t stride, const Share& share)
{
    std::array<float, channels> sums{};
    const Sample* pixel = start + share.first * stride;
    for (const float weight : share.weights) {
        for (std::size_t channel = 0; channel < channels; ++channel)
            sums[channel] += weight * static_cast<float>(pixel[channel]);
        pixel += stride;
    }
    return sums;
}

std::vector<float> narrowed(const RgbPixels& pixels, std::uint32_t width)
{
    const std::vector<Share> columns = shares(pixels.width, pixels.coveredWidth, width);
    std::vector<float> out;
    out.reserve(std::size_t{width} * pixels.height * channels);
    for (std::size_t row = 0; row < pixels.height; ++row)
        for (const Share& column : columns) {
            const auto pixel = mix(&pixels.samples[row * pixels.width * channels], channels, column);
            out.insert(out.end(), pixel.begin(), pixel.end());
        }
    return out;
}

std::byte asByte(float sample)
{
    return static_cast<std::byte>(std::lround(std::clamp(sample, 0.0F, 255.0F)));
}

// In the order that previews have.
void append(std::vector<std::byte>& out, const std::array<float, channels>& rgb)
{
    for (const float sample : {rgb[2], rgb[1], rgb[0]})
        out.push_back(asByte(sample));
    out.push_back(std::byte{0});
}

bool alreadyOfSize(const RgbPixels& pixels, PictureSize size)
{
    return PictureSize{pixels.width, pixels.height} == size && pixels.coveredWidth == size.width &&
           pixels.coveredHeight == size.height;
}

std::vector<std::byte> copied(const RgbPixels& pixels)
{
    std::vector<std::byte> out;
    out.reserve(pixels.samples.size() / channels * 4);
    for (std::size_t i = 0; i + channels <= pixels.samples.size(); i += channels)
        append(out, mix(&pixels.samples[i], channels, Share{0, {1}}));
    return out;
}

}  // namespace

DecodedPicture scaledPixels(const RgbPixels& pixels, PictureSize size)
{
    DecodedPicture picture{{}, size.width, size.height, {}};
    if (alreadyOfSize(pixels, size)) {
        picture.pixels = copied(pixels);
        return picture;
    }
    const std::vector<float> narrow = narrowed(pixels, size.width);
    const std::size_t rowLength = std::size_t{size.width} * channels;
    picture.pixels.reserve(std::size_t{size.width} * size.height * 4);
    for (const Share& row : shares(pixels.height, pixels.coveredHeight, size.height))
        for (std::size_t column = 0; column < size.width; ++column)
            append(picture.pixels, mix(&narrow[column * channels], rowLength, row));
    return picture;
}

}  // namespace kelvane::linux_os
