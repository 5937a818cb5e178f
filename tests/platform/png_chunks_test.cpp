#include "platform/png_chunks.h"

#include <gtest/gtest.h>

#include "platform/bitmap_header.h"
#include "support/bytes_file.h"

namespace kelvane {
namespace {

using testing::BytesFile;

std::string chunk(std::uint32_t length, const std::string& named)
{
    std::string bytes;
    for (int i = 3; i >= 0; --i)
        bytes += static_cast<char>(length >> 8 * i & 0xFF);
    return bytes + named + std::string(4, '\0');
}

const std::string signature("\x89PNG\r\n\x1A\n", 8);
const std::string header = chunk(13, "IHDR" + std::string(8, '\1') + std::string("\x10\6\0\0\0", 5));
const std::string end = chunk(0, "IEND");

PngChunks chunksOf(std::string bytes)
{
    BytesFile file(std::move(bytes));
    return readPngChunks(file);
}

TEST(PngChunks, TellTheDepthOfAPixelAndFindTheBlockOfTheCamera)
{
    const PngChunks chunks = chunksOf(signature + header + chunk(3, "tEXtabc") + chunk(4, "eXIfII*\n") + end);
    EXPECT_EQ(chunks.bitDepth, 64u);
    EXPECT_EQ(chunks.exif.size(), 4u);
    EXPECT_EQ(chunksOf("GIF89a").bitDepth, 0u);
}

TEST(PngChunks, BelieveNoLength)
{
    EXPECT_TRUE(chunksOf(signature + header + chunk(0xFFFFFFFF, "eXIfII*") + end).exif.empty());
    EXPECT_TRUE(chunksOf(signature + header + chunk(0xFFFFFFF0, "tEXt") + chunk(4, "eXIfII*\n")).exif.empty());
    EXPECT_TRUE(chunksOf(signature + header + chunk(200, "eXIfII*\n")).exif.empty());
    EXPECT_EQ(chunksOf(signature + header.substr(0, 12)).bitDepth, 0u);
    std::string many = signature + header;
    for (int i = 0; i < 200'000; ++i)
        many += chunk(0, "tEXt");
    EXPECT_TRUE(chunksOf(many + chunk(4, "eXIfII*\n")).exif.empty()) << "there is an end to looking";
}

TEST(BitmapHeader, KnowsRowsFromTheTopAndTheOldestForm)
{
    const auto read = [](std::string bytes) {
        bytes.resize(60);
        BytesFile file(std::move(bytes));
        return readBitmapHeader(file, "a.bmp");
    };
    const std::string before = "BM" + std::string(12, '\0');
    const auto fromTop = read(before + std::string("\x28\0\0\0\x14\0\0\0\xF6\xFF\xFF\xFF\1\0\x20\0", 16));
    ASSERT_TRUE(fromTop);
    EXPECT_EQ(fromTop->height, 10u);
    EXPECT_EQ(fromTop->bitDepth, 32u);
    const auto oldest = read(before + std::string("\x0C\0\0\0\x14\0\x0A\0\1\0\4\0", 12));
    ASSERT_TRUE(oldest);
    EXPECT_EQ(oldest->width, 20u);
    EXPECT_EQ(oldest->bitDepth, 4u);
    EXPECT_FALSE(read(before + std::string("\x28\0\0\0\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F\1\0\x20\0", 16)));
}

}  // namespace
}  // namespace kelvane
