#include "props/cached_bitmap.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "base/byte_stream.h"

namespace kelvane {
namespace {

constexpr std::size_t pixelSize = 4;
constexpr std::size_t channels = 3;
constexpr std::uint8_t packedVersion = 2;

bool withinBounds(std::uint32_t width, std::uint32_t height)
{
    return width > 0 && height > 0 && width <= CachedBitmap::mostWidth && height <= CachedBitmap::mostHeight;
}

// Pixels are read and written whole: byte by byte, compilers make it one pixel after the other.
static_assert(std::endian::native == std::endian::little);
constexpr std::uint32_t colours = 0x00FFFFFF;

std::uint32_t load(std::span<const std::byte> from)
{
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, from.data(), pixelSize);
    return pixel;
}

void store(std::uint32_t pixel, std::span<std::byte> to)
{
    std::memcpy(to.data(), &pixel, pixelSize);
}

std::uint8_t sum(std::uint8_t a, std::uint8_t b)
{
    return static_cast<std::uint8_t>(a + b);
}

std::uint8_t difference(std::uint8_t a, std::uint8_t b)
{
    return static_cast<std::uint8_t>(a - b);
}

// What is left of a row of one channel once the row above is taken from it: what the cache, which compresses what it is
// given, has much to gain by. A better guess (of several neighbours) would leave less, but takes one pixel after the
// other, and a search that goes by the cache mostly unpacks.
void takeAway(std::span<std::uint8_t> row, std::span<const std::uint8_t> above)
{
    for (std::size_t x = 0; x < row.size(); ++x)
        row[x] = difference(row[x], above[x]);
}

void giveBack(std::span<std::uint8_t> row, std::span<const std::uint8_t> above)
{
    for (std::size_t x = 0; x < row.size(); ++x)
        row[x] = sum(row[x], above[x]);
}

// One after the other: green, and how far blue and red are from it.
class Channels {
public:
    Channels(std::uint32_t width, std::uint32_t height)
        : width_(width), height_(height), count_(std::size_t{width} * height), values_(channels * count_)
    {
    }

    [[nodiscard]] std::span<std::uint8_t> all() { return values_; }

    void take(std::span<const std::byte> pixels)
    {
        for (std::size_t i = 0; i < count_; ++i) {
            const auto blue = std::to_integer<std::uint8_t>(pixels[i * pixelSize]),
                       green = std::to_integer<std::uint8_t>(pixels[i * pixelSize + 1]),
                       red = std::to_integer<std::uint8_t>(pixels[i * pixelSize + 2]);
            values_[i] = green;
            values_[count_ + i] = difference(blue, green);
            values_[2 * count_ + i] = difference(red, green);
        }
    }

    [[nodiscard]] std::vector<std::byte> pixels() const
    {
        std::vector<std::byte> pixels(count_ * pixelSize);
        const std::span greens = std::span(values_).first(count_), blues = std::span(values_).subspan(count_, count_),
                        reds = std::span(values_).last(count_);
        const std::span out(pixels);  // what is written may be any of the members, for all that the compiler knows
        for (std::size_t i = 0; i < out.size() / pixelSize; ++i) {
            const std::uint32_t blue = sum(blues[i], greens[i]), green = greens[i], red = sum(reds[i], greens[i]);
            const std::uint32_t pixel = blue | green << 8u | red << 16u;
            store(pixel, out.subspan(i * pixelSize, pixelSize));
        }
        return pixels;
    }

    void takeRowsAway()
    {
        for (std::size_t row = channels * height_ - 1; row > 0; --row)
            takeAway(rowAt(row), rowAt(row - 1));
    }

    void giveRowsBack()
    {
        for (std::size_t row = 1; row < channels * height_; ++row)
            giveBack(rowAt(row), rowAt(row - 1));
    }

private:
    // Of all channels.
    [[nodiscard]] std::span<std::uint8_t> rowAt(std::size_t row) { return all().subspan(row * width_, width_); }

    std::size_t width_, height_, count_;
    std::vector<std::uint8_t> values_;
};

}  // namespace

CachedBitmap::CachedBitmap(std::uint32_t width, std::uint32_t height, std::vector<std::byte> pixels)
    : width_(width), height_(height), pixels_(std::move(pixels))
{
    const std::span all(pixels_);
    for (std::size_t i = 0; i < all.size() / pixelSize; ++i)
        store(colours & load(all.subspan(i * pixelSize, pixelSize)), all.subspan(i * pixelSize, pixelSize));
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
    Channels values(width_, height_);
    values.take(pixels());
    values.takeRowsAway();
    writer.bytes(std::as_bytes(values.all()));
    return writer.take();
}

Ref<CachedBitmap> CachedBitmap::unpacked(std::span<const std::byte> bytes)
{
    ByteReader reader(bytes);
    const auto version = reader.number<std::uint8_t>();
    const auto width = reader.number<std::uint16_t>(), height = reader.number<std::uint16_t>();
    if (version != packedVersion || !width || !height || !withinBounds(*width, *height))
        return {};
    Channels values(*width, *height);
    const auto rest = reader.bytes(values.all().size());
    if (!rest || !reader.atEnd())
        return {};
    std::ranges::copy(*rest, std::as_writable_bytes(values.all()).begin());
    values.giveRowsBack();
    return make(*width, *height, values.pixels());
}

}  // namespace kelvane
