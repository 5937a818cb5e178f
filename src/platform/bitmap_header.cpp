#include "platform/bitmap_header.h"

#include <array>

#include "base/words.h"

namespace kelvane {
namespace {

constexpr std::uint32_t mostPixels = 1'000'000;  // of a side

// Numbers with the low byte first.
class Head {
public:
    explicit Head(RandomAccessFile& file)
    {
        const auto count = file.readAt(0, bytes_);
        complete_ = count && *count >= 26;
    }

    [[nodiscard]] bool complete() const { return complete_; }
    [[nodiscard]] std::uint32_t number(std::size_t position, std::size_t size) const
    {
        std::uint32_t value = 0;
        for (std::size_t i = size; i-- > 0;)
            value = value << 8 | std::to_integer<std::uint32_t>(bytes_[position + i]);
        return value;
    }

private:
    std::array<std::byte, 46> bytes_{};
    bool complete_ = false;
};

// Rows from top to bottom have a negative height.
std::uint32_t magnitude(std::uint32_t bits)
{
    return static_cast<std::int32_t>(bits) < 0 ? 0 - bits : bits;
}

bool isPlausible(const BitmapHeader& header)
{
    return header.width > 0 && header.width <= mostPixels && header.height > 0 && header.height <= mostPixels &&
           header.bitDepth > 0 && header.bitDepth <= 64;
}

BitmapHeader bmp(const Head& head)
{
    constexpr std::uint32_t oldestSize = 12;
    if (head.number(14, 4) == oldestSize)
        return {head.number(18, 2), head.number(20, 2), head.number(24, 2), 0};
    return {head.number(18, 4), magnitude(head.number(22, 4)), head.number(28, 2),
            static_cast<std::int32_t>(head.number(38, 4))};
}

}  // namespace

std::optional<BitmapHeader> readBitmapHeader(RandomAccessFile& file, std::string_view fileName)
{
    const Head head(file);
    BitmapHeader header;
    if (head.complete() && head.number(0, 2) == 0x4D42)
        header = bmp(head);
    else if (head.complete() && asciiLower(fileName).ends_with(".tga"))
        header = {head.number(12, 2), head.number(14, 2), head.number(16, 1), 0};
    return isPlausible(header) ? std::optional(header) : std::nullopt;
}

}  // namespace kelvane
