#include "props/preview_signature.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/byte_stream.h"

namespace kelvane {
namespace {

constexpr std::size_t pixelSize = 4;
constexpr std::size_t coarseSide = PreviewSignature::side / 4;
constexpr std::size_t coarseCells = coarseSide * coarseSide;
constexpr std::uint8_t packedVersion = 1;

constexpr std::size_t blue = 0, green = 1, red = 2;  // in a pixel

// The first pixel of a cell; a cell has at least one, so that those of tiny previews overlap.
std::size_t begin(std::size_t cell, std::size_t cells, std::size_t size)
{
    return std::min(cell * size / cells, size - 1);
}
std::size_t end(std::size_t cell, std::size_t cells, std::size_t size)
{
    return std::max((cell + 1) * size / cells, begin(cell, cells, size) + 1);
}

struct CellSums {
    std::array<std::uint32_t, 3> colours{};
    std::uint32_t pixels = 0;

    void add(const CachedBitmap& preview, std::size_t x, std::size_t y)
    {
        const std::byte* pixel = preview.pixels().data() + (y * preview.width() + x) * pixelSize;
        for (std::size_t colour = 0; colour < 3; ++colour)
            colours[colour] += std::to_integer<std::uint32_t>(pixel[colour]);
        ++pixels;
    }
    [[nodiscard]] std::uint8_t mean(std::size_t colour) const
    {
        return static_cast<std::uint8_t>((colours[colour] + pixels / 2) / pixels);
    }
    // The luma of ITU-R BT.601, in whole numbers.
    [[nodiscard]] std::uint8_t brightness() const
    {
        const std::uint32_t sum = 299 * colours[red] + 587 * colours[green] + 114 * colours[blue];
        return static_cast<std::uint8_t>((sum / 1000 + pixels / 2) / pixels);
    }
};

CellSums cell(const CachedBitmap& preview, std::size_t column, std::size_t row, std::size_t cells)
{
    CellSums sums;
    for (std::size_t y = begin(row, cells, preview.height()); y < end(row, cells, preview.height()); ++y)
        for (std::size_t x = begin(column, cells, preview.width()); x < end(column, cells, preview.width()); ++x)
            sums.add(preview, x, y);
    return sums;
}

}  // namespace

PreviewSignature PreviewSignature::of(const CachedBitmap& preview)
{
    PreviewSignature made;
    made.width = static_cast<std::uint16_t>(preview.width());
    made.height = static_cast<std::uint16_t>(preview.height());
    for (std::size_t i = 0; i < made.brightness.size(); ++i)
        made.brightness[i] = cell(preview, i % side, i / side, side).brightness();
    for (std::size_t i = 0; i < coarseCells; ++i) {
        const CellSums sums = cell(preview, i % coarseSide, i / coarseSide, coarseSide);
        made.colours[3 * i] = sums.mean(red);
        made.colours[3 * i + 1] = sums.mean(green);
        made.colours[3 * i + 2] = sums.mean(blue);
    }
    return made;
}

std::vector<std::byte> PreviewSignature::packed() const
{
    ByteWriter writer;
    writer.number(packedVersion);
    writer.number(width);
    writer.number(height);
    writer.bytes(std::as_bytes(std::span(brightness)));
    writer.bytes(std::as_bytes(std::span(colours)));
    return writer.take();
}

std::optional<PreviewSignature> PreviewSignature::unpacked(std::span<const std::byte> bytes)
{
    ByteReader reader(bytes);
    const auto version = reader.number<std::uint8_t>();
    const auto width = reader.number<std::uint16_t>(), height = reader.number<std::uint16_t>();
    PreviewSignature made;
    const auto brightness = reader.bytes(made.brightness.size()), colours = reader.bytes(made.colours.size());
    if (version != packedVersion || !width || !height || !brightness || !colours || !reader.atEnd())
        return std::nullopt;
    if (*width == 0 || *height == 0 || *width > CachedBitmap::mostWidth || *height > CachedBitmap::mostHeight)
        return std::nullopt;
    made.width = *width;
    made.height = *height;
    const auto number = [](std::byte value) { return std::to_integer<std::uint8_t>(value); };
    std::transform(brightness->begin(), brightness->end(), made.brightness.begin(), number);
    std::transform(colours->begin(), colours->end(), made.colours.begin(), number);
    return made;
}

}  // namespace kelvane
