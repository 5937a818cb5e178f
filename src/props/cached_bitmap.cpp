#include "props/cached_bitmap.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/byte_stream.h"

namespace kelvane {
namespace {

constexpr std::size_t pixelSize = 4;
constexpr std::size_t channels = 3;
constexpr std::uint8_t packedVersion = 1;

bool withinBounds(std::uint32_t width, std::uint32_t height)
{
    return width > 0 && height > 0 && width <= CachedBitmap::mostWidth && height <= CachedBitmap::mostHeight;
}

std::uint8_t sum(std::uint8_t a, std::uint8_t b)
{
    return static_cast<std::uint8_t>(a + b);
}

std::uint8_t difference(std::uint8_t a, std::uint8_t b)
{
    return static_cast<std::uint8_t>(a - b);
}

// Without a branch: which of two neighbours is darker cannot be foretold, and guessing wrong would take most of the
// time.
int lesser(int a, int b)
{
    const int difference = a - b;
    return b + (difference & (difference >> 31));
}

using Colours = std::array<std::uint8_t, channels>;  // green, and how far blue and red are from it

// The colours of a preview, pixel by pixel. What a value is expected to be, by those before it, leaves little over, so
// that the cache, which compresses what it is given, has much to gain.
class Expectation {
public:
    Expectation(std::uint32_t width, std::uint32_t height) : width_(width), height_(height), values_(width * height) {}

    [[nodiscard]] Colours& operator[](std::size_t i) { return values_[i]; }

    // For each pixel in turn: its place, and what it is expected to be.
    template <class Take>
    void forEach(Take take)
    {
        std::size_t i = 0;
        for (std::uint32_t y = 0; y < height_; ++y)
            for (std::uint32_t x = 0; x < width_; ++x, ++i)
                take(i, expected(i, x > 0, y > 0));
    }

private:
    // The median edge detector (Weinberger, Seroussi and Sapiro, "LOCO-I", 1996): the plane through three neighbours,
    // kept between two of them.
    [[nodiscard]] static std::uint8_t within(int left, int up, int corner)
    {
        const int low = lesser(left, up), high = left + up - low;
        const int kept = lesser(high, left + up - corner);
        return static_cast<std::uint8_t>(low + kept - lesser(low, kept));
    }

    [[nodiscard]] Colours expected(std::size_t i, bool hasLeft, bool hasUp) const
    {
        if (!hasUp)
            return hasLeft ? values_[i - 1] : Colours{};
        if (!hasLeft)
            return values_[i - width_];
        const Colours &left = values_[i - 1], &up = values_[i - width_], &corner = values_[i - width_ - 1];
        return {within(left[0], up[0], corner[0]), within(left[1], up[1], corner[1]),
                within(left[2], up[2], corner[2])};
    }

    std::uint32_t width_, height_;
    std::vector<Colours> values_;
};

Colours parted(std::span<const std::byte> pixel)
{
    const auto blue = std::to_integer<std::uint8_t>(pixel[0]), green = std::to_integer<std::uint8_t>(pixel[1]),
               red = std::to_integer<std::uint8_t>(pixel[2]);
    return {green, difference(blue, green), difference(red, green)};
}

void joined(const Colours& colours, std::span<std::byte> pixel)
{
    pixel[0] = std::byte{sum(colours[1], colours[0])};
    pixel[1] = std::byte{colours[0]};
    pixel[2] = std::byte{sum(colours[2], colours[0])};
}

}  // namespace

CachedBitmap::CachedBitmap(std::uint32_t width, std::uint32_t height, std::vector<std::byte> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels))
{
    for (std::size_t i = pixelSize - 1; i < pixels_.size(); i += pixelSize)
        pixels_[i] = std::byte{0};
}

Ref<CachedBitmap> CachedBitmap::make(std::uint32_t width, std::uint32_t height, std::vector<std::byte> pixels)
{
    if (!withinBounds(width, height) || pixels.size() != std::size_t{width} * height * pixelSize)
        return {};
    return Ref<CachedBitmap>(new CachedBitmap(width, height, std::move(pixels)));
}

std::vector<std::byte> CachedBitmap::packed() const
{
    ByteWriter writer;
    writer.number(packedVersion);
    writer.number(static_cast<std::uint16_t>(width_));
    writer.number(static_cast<std::uint16_t>(height_));
    const std::size_t count = std::size_t{width_} * height_;
    std::vector<std::byte> rest(channels * count);
    Expectation values(width_, height_);
    values.forEach([&](std::size_t i, const Colours& expected) {
        values[i] = parted(pixels().subspan(i * pixelSize, pixelSize));
        for (std::size_t channel = 0; channel < channels; ++channel)
            rest[channel * count + i] = std::byte{difference(values[i][channel], expected[channel])};
    });
    writer.bytes(rest);
    return writer.take();
}

Ref<CachedBitmap> CachedBitmap::unpacked(std::span<const std::byte> bytes)
{
    ByteReader reader(bytes);
    const auto version = reader.number<std::uint8_t>();
    const auto width = reader.number<std::uint16_t>(), height = reader.number<std::uint16_t>();
    if (version != packedVersion || !width || !height || !withinBounds(*width, *height))
        return {};
    const std::size_t count = std::size_t{*width} * *height;
    const auto rest = reader.bytes(channels * count);
    if (!rest || !reader.atEnd())
        return {};
    Expectation values(*width, *height);
    std::vector<std::byte> pixels(count * pixelSize);
    values.forEach([&](std::size_t i, const Colours& expected) {
        for (std::size_t channel = 0; channel < channels; ++channel)
            values[i][channel] = sum(std::to_integer<std::uint8_t>((*rest)[channel * count + i]), expected[channel]);
        joined(values[i], std::span(pixels).subspan(i * pixelSize, pixelSize));
    });
    return make(*width, *height, std::move(pixels));
}

}  // namespace kelvane
