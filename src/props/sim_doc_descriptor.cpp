#include "props/sim_doc_descriptor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/byte_stream.h"
#include "base/crc32.h"

namespace kelvane {
namespace {

// Mean and variance in one pass that stays exact for long series (B. P. Welford, Technometrics 4/3, 1962).
class RunningStatistics {
public:
    void add(double x)
    {
        count_ += 1;
        const double delta = x - mean_;
        mean_ += delta / count_;
        squares_ += (x - mean_) * delta;
    }
    [[nodiscard]] double mean() const { return mean_; }
    [[nodiscard]] double deviation() const { return std::sqrt(squares_ / count_); }

private:
    double count_ = 0, mean_ = 0, squares_ = 0;
};

// Each character with the one behind it, by their low bytes; a zero stands behind the last one.
std::array<double, 4> statisticsOf(std::u16string_view text)
{
    RunningStatistics characters, pairs;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned following = i + 1 < text.size() ? text[i + 1] : 0u;
        characters.add(text[i]);
        pairs.add((text[i] & 0xFFu) + 256 * (following & 0xFFu));
    }
    return {characters.mean() * (1.0 / 255), characters.deviation() * (1.0 / 400), pairs.mean() * (1.0 / 25000),
            pairs.deviation() * (1.0 / 12000)};
}

// The bytes of a cached descriptor: version, planes of bytes, size, characters; then the low bytes of all characters
// and, where one of them is not 0, the high bytes; at last the CRC-32 of all that. Bytes of a kind stand together since
// that is what compresses well.
constexpr std::uint8_t packedVersion = 1;

std::vector<std::byte> plane(std::u16string_view text, int shift)
{
    std::vector<std::byte> bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [shift](char16_t unit) { return static_cast<std::byte>(unit >> shift & 0xFF); });
    return bytes;
}

// Nothing where the check at the end is not that of the rest.
std::optional<std::span<const std::byte>> checkedBytes(std::span<const std::byte> bytes)
{
    constexpr std::size_t checkSize = sizeof(std::uint32_t);
    if (bytes.size() < checkSize)
        return std::nullopt;
    const auto rest = bytes.first(bytes.size() - checkSize);
    if (ByteReader(bytes.last(checkSize)).number<std::uint32_t>() != crc32(rest))
        return std::nullopt;
    return rest;
}

std::optional<std::u16string> textOfPlanes(ByteReader& reader, std::uint32_t length, bool wide)
{
    const auto low = reader.bytes(length);
    const auto high = low && wide ? reader.bytes(length) : std::span<const std::byte>();
    if (!low || !high || !reader.atEnd())
        return std::nullopt;
    std::u16string text(length, u'\0');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char16_t>(std::to_integer<unsigned>((*low)[i]) |
                                        (wide ? std::to_integer<unsigned>((*high)[i]) << 8 : 0u));
    return text;
}

}  // namespace

SimDocDescriptor::SimDocDescriptor(std::u16string text, std::uint64_t size)
    : statistics_(statisticsOf(text)),
      text_(std::move(text)),
      size_(size),
      digest_(crc32(std::as_bytes(std::span(text_))))
{
}

Ref<SimDocDescriptor> SimDocDescriptor::make(std::u16string text, std::uint64_t size)
{
    if (text.size() < leastLength)
        return {};
    return Ref<SimDocDescriptor>(new SimDocDescriptor(std::move(text), size));
}

std::vector<std::byte> SimDocDescriptor::packed() const
{
    const bool wide = std::any_of(text_.begin(), text_.end(), [](char16_t unit) { return unit > 0xFF; });
    ByteWriter writer;
    writer.number(packedVersion);
    writer.number(static_cast<std::uint8_t>(wide ? 2 : 1));
    writer.number(size_);
    writer.number(length());
    writer.bytes(plane(text_, 0));
    if (wide)
        writer.bytes(plane(text_, 8));
    writer.number(crc32(writer.written()));
    return writer.take();
}

Ref<SimDocDescriptor> SimDocDescriptor::unpacked(std::span<const std::byte> bytes)
{
    const auto checked = checkedBytes(bytes);
    if (!checked)
        return {};
    ByteReader reader(*checked);
    const auto version = reader.number<std::uint8_t>();
    const auto planes = reader.number<std::uint8_t>();
    const auto size = reader.number<std::uint64_t>();
    const auto length = reader.number<std::uint32_t>();
    if (version != packedVersion || (planes != 1 && planes != 2) || !size || !length)
        return {};
    auto text = textOfPlanes(reader, *length, planes == 2);
    return text ? make(*std::move(text), *size) : Ref<SimDocDescriptor>();
}

}  // namespace kelvane
