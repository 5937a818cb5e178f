#include "platform/png_chunks.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelvane {
namespace {

constexpr std::string_view signature("\x89PNG\r\n\x1A\n", 8);
constexpr std::size_t mostChunks = 100'000;
constexpr std::size_t longestExif = 1024 * 1024;
constexpr std::size_t headBytes = 8;  // length and name
constexpr std::size_t checksumBytes = 4;

// Filled with zeros where the file ends before.
template <std::size_t size>
std::array<char, size> bytesAt(RandomAccessFile& file, std::uint64_t position)
{
    std::array<char, size> bytes{};
    const auto count = file.readAt(position, std::as_writable_bytes(std::span(bytes)));
    if (!count || *count < size)
        bytes.fill('\0');
    return bytes;
}

std::uint32_t bigEndian(const char* bytes)
{
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

// By the type of color: grey, -, red green blue, an index, grey and opacity, -, all four.
std::uint32_t channels(char colorType)
{
    constexpr std::array<std::uint32_t, 7> count = {1, 0, 3, 1, 2, 0, 4};
    const auto type = static_cast<unsigned char>(colorType);
    return type < count.size() ? count[type] : 0;
}

std::vector<std::byte> contentAt(RandomAccessFile& file, std::uint64_t position, std::uint32_t length)
{
    if (length > longestExif || position > file.size() || file.size() - position < length)
        return {};
    std::vector<std::byte> content(length);
    const auto count = file.readAt(position, content);
    return count && *count == length ? std::move(content) : std::vector<std::byte>();
}

}  // namespace

PngChunks readPngChunks(RandomAccessFile& file)
{
    PngChunks chunks;
    const auto start = bytesAt<signature.size()>(file, 0);
    if (std::string_view(start.data(), start.size()) != signature)
        return chunks;
    std::uint64_t position = signature.size();
    for (std::size_t i = 0; i < mostChunks; ++i) {
        const auto head = bytesAt<headBytes>(file, position);
        const std::uint32_t length = bigEndian(head.data());
        const std::string_view name(head.data() + 4, 4);
        const std::uint64_t content = position + headBytes;
        if (name == "IHDR") {
            const auto header = bytesAt<10>(file, content);
            chunks.bitDepth = static_cast<unsigned char>(header[8]) * channels(header[9]);
        } else if (name == "eXIf") {
            chunks.exif = contentAt(file, content, length);
        }
        if (name == "IEND" || name == std::string_view("\0\0\0\0", 4) || !chunks.exif.empty())
            break;
        position = content + length + checksumBytes;
    }
    return chunks;
}

}  // namespace kelvane
