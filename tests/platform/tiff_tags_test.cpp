#include "platform/tiff_tags.h"

#include <gtest/gtest.h>
#include <random>

#include "platform/exif_facts.h"
#include "platform/property_table.h"
#include "support/bytes_file.h"
#include "support/tiff_maker.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::TiffMaker;

TiffTags tagsOf(std::string bytes)
{
    BytesFile file(std::move(bytes));
    return readTiffTags(file);
}

class CountingFile final : public BytesFile {
public:
    using BytesFile::BytesFile;
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        read += buffer.size();
        return BytesFile::readAt(position, buffer);
    }
    std::uint64_t read = 0;
};

TEST(TiffTags, ReadNumbersOfEveryTypeInBothOrders)
{
    for (const bool bigEndian : {false, true}) {
        TiffMaker maker(bigEndian);
        maker.shorts(TiffMaker::picture, 256, {7, 65'535}).longs(TiffMaker::picture, 257, {4'000'000'000});
        maker.fractions(TiffMaker::exif, 1, {{1, 4}, {3, 0}}).fractions(TiffMaker::exif, 2, {{-1, 8}}, true);
        maker.claim(TiffMaker::exif, 3, 6, 1, "\xFE");
        const TiffTags tags = tagsOf(maker.made());
        EXPECT_EQ(tags.first(256)->whole(1), 65'535);
        EXPECT_EQ(tags.first(256)->whole(2), std::nullopt);
        EXPECT_EQ(tags.first(257)->whole(), 4'000'000'000);
        EXPECT_EQ(TiffTags::find(tags.exif, 1)->real(), 0.25);
        EXPECT_EQ(TiffTags::find(tags.exif, 1)->real(1), std::nullopt);
        EXPECT_EQ(TiffTags::find(tags.exif, 2)->real(), -0.125);
        EXPECT_EQ(TiffTags::find(tags.exif, 3)->whole(), -2);
    }
}

TEST(TiffTags, EndWhereDirectoriesPointAtThemselves)
{
    EXPECT_EQ(tagsOf(TiffMaker().shorts(TiffMaker::picture, 256, {7}).nextPicture(8).made()).pictures.size(), 1u);
    TiffMaker circle;
    circle.longs(TiffMaker::picture, 0x014A, {8, 8, 8}).longs(TiffMaker::picture, 0x8769, {8});
    EXPECT_EQ(tagsOf(circle.made()).pictures.size(), 1u);
}

TEST(TiffTags, BelieveNoLength)
{
    TiffMaker maker;
    maker.claim(TiffMaker::picture, 270, 2, 0xFFFFFFFF, "text")
        .claim(TiffMaker::picture, 271, 12, 0x20000000, "text")
        .claim(TiffMaker::picture, 272, 2, 40'000, "longer than there is")
        .claim(TiffMaker::picture, 273, 99, 1, "text")
        .claim(TiffMaker::picture, 700, 1, 0x40000000, "text")
        .shorts(TiffMaker::picture, 274, {6});
    const TiffTags tags = tagsOf(maker.made());
    ASSERT_EQ(tags.pictures.size(), 1u);
    EXPECT_EQ(tags.pictures[0].size(), 1u);
}

TEST(TiffTags, ReadABoundedPartOfAFileWhoseDirectoriesAllPointToTheSameBytes)
{
    std::string bytes("II*\0\x08\0\0\0", 8);
    const auto put = [&bytes](std::uint64_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(value >> 8 * i & 0xFF);
    };
    for (std::uint32_t directory = 0; directory < 60; ++directory) {
        put(1'000, 2);
        for (std::uint32_t field = 0; field < 1'000; ++field) {
            put(field, 2);
            put(7, 2);
            put(60'000, 4);
            put(0, 4);
        }
        put(bytes.size() + 4, 4);
    }
    CountingFile file(bytes);
    const TiffTags tags = readTiffTags(file);
    EXPECT_LE(tags.pictures.size(), 40u);
    EXPECT_LT(file.read, 40u * 1024 * 1024);
}

TEST(TiffTags, SurviveAnyByteBeingWrong)
{
    const std::string whole = testing::usualExif().made();
    const auto properties = makePropertyTable();
    std::mt19937 random(5);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string damaged = whole;
        damaged[i] = static_cast<char>(random());
        FactList facts(*properties);
        const TiffTags tags = tagsOf(damaged);
        addCameraFacts(tags, facts);
        addExifWords(tags, facts);
        FactList cut(*properties);
        addCameraFacts(tagsOf(whole.substr(0, i)), cut);
        EXPECT_LT(facts.take().size(), 60u);
        EXPECT_LT(cut.take().size(), 60u);
    }
}

}  // namespace
}  // namespace kelvane
