#include "media_adapters/picture_samples.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "media_adapters/made_files.h"
#include "platform/linux/media/adapters.h"
#include "support/bytes_file.h"

namespace kelvane::testing {
namespace {

constexpr std::array<Colour, 4> cornerColours{{{250, 10, 10}, {10, 250, 10}, {10, 10, 250}, {250, 250, 10}}};
constexpr std::string_view cornerLetters = "RGBY";

char letterOf(const Colour& colour)
{
    constexpr int tolerance = 60;
    for (std::size_t i = 0; i < cornerColours.size(); ++i)
        if (std::ranges::equal(colour, cornerColours[i], [](int a, int b) { return std::abs(a - b) < tolerance; }))
            return cornerLetters[i];
    return '?';
}

Colour hills(double x, double y)
{
    const auto wave = [](double phase) { return static_cast<int>(127.5 + 120 * std::sin(phase)); };
    const bool disc = std::hypot(std::fmod(x * 9, 1.0) - 0.5, std::fmod(y * 7, 1.0) - 0.5) < 0.3;
    return disc ? Colour{wave(x * 40), 40, 220} : Colour{wave(x * 7 + y * 3), wave(y * 9), wave(x * 5 - y * 6)};
}

}  // namespace

std::string paintedPicture(std::uint32_t width, std::uint32_t height,
                           const std::function<Colour(std::uint32_t, std::uint32_t)>& colourAt)
{
    std::string ppm = "P6\n" + std::to_string(width) + " " + std::to_string(height) + "\n255\n";
    for (std::uint32_t y = 0; y < height; ++y)
        for (std::uint32_t x = 0; x < width; ++x)
            for (const int sample : colourAt(x, y))
                ppm += static_cast<char>(sample);
    return ppm;
}

std::string cornersPicture(std::uint32_t width, std::uint32_t height)
{
    return paintedPicture(width, height, [=](std::uint32_t x, std::uint32_t y) {
        return cornerColours[(y >= height / 2 ? 2u : 0u) + (x >= width / 2 ? 1u : 0u)];
    });
}

std::string landscape(std::uint32_t width, std::uint32_t height)
{
    return paintedPicture(
        width, height, [=](std::uint32_t x, std::uint32_t y) { return hills((x + 0.5) / width, (y + 0.5) / height); });
}

std::string inFormat(const std::string& ppm, std::string_view fileName, const std::string& options)
{
    return madeBy("vips copy IN OUT" + options, fileName, ppm);
}

DecodedPicture picturePreview(const std::string& bytes, std::string_view fileName, const PreviewBounds& bounds)
{
    BytesFile file(bytes);
    return makeVipsPictureDecoding()->preview(file, fileName, bounds);
}

DecodedPicture filmPreview(const std::string& bytes, std::string_view fileName)
{
    BytesFile file(bytes);
    return makeFfmpegFilmDecoding()->preview(file, fileName, {});
}

std::string sizeText(const DecodedPicture& picture)
{
    if (picture.fault.outcome != MediaOutcome::made)
        return "fault " + std::to_string(static_cast<int>(picture.fault.outcome)) + " " + picture.fault.detail;
    return std::to_string(picture.width) + "x" + std::to_string(picture.height);
}

Colour pixelAt(const DecodedPicture& picture, std::uint32_t x, std::uint32_t y)
{
    const std::byte* pixel = &picture.pixels.at((std::size_t{y} * picture.width + x) * 4);
    const auto sample = [&](std::size_t at) { return std::to_integer<int>(pixel[at]); };
    return {sample(2), sample(1), sample(0)};
}

std::string cornersOf(const DecodedPicture& picture)
{
    if (picture.pixels.empty())
        return sizeText(picture);
    const std::uint32_t right = picture.width - 2;
    const std::uint32_t bottom = picture.height - 2;
    return {letterOf(pixelAt(picture, 1, 1)), letterOf(pixelAt(picture, right, 1)),
            letterOf(pixelAt(picture, 1, bottom)), letterOf(pixelAt(picture, right, bottom))};
}

double differenceOf(const DecodedPicture& a, const DecodedPicture& b)
{
    if (a.pixels.empty() || sizeText(a) != sizeText(b))
        return 255;
    double sum = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        sum += std::abs(std::to_integer<int>(a.pixels[i]) - std::to_integer<int>(b.pixels[i]));
    return sum / (0.75 * static_cast<double>(a.pixels.size()));
}

}  // namespace kelvane::testing
