#include "props/cached_bitmap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "props/made_up_previews.h"

namespace kelvane {
namespace {

using testing::noisyPreview;
using testing::Scene;

TEST(CachedBitmap, HasOnePixelForEachPlaceWithinItsBounds)
{
    EXPECT_TRUE(CachedBitmap::make(200, 200, std::vector<std::byte>(160'000)));
    EXPECT_TRUE(CachedBitmap::make(1, 1, std::vector<std::byte>(4)));
    EXPECT_FALSE(CachedBitmap::make(201, 1, std::vector<std::byte>(804)));
    EXPECT_FALSE(CachedBitmap::make(1, 201, std::vector<std::byte>(804)));
    EXPECT_FALSE(CachedBitmap::make(0, 0, {}));
    EXPECT_FALSE(CachedBitmap::make(2, 2, std::vector<std::byte>(15)));
    EXPECT_FALSE(CachedBitmap::make(2, 2, std::vector<std::byte>(17)));
}

TEST(CachedBitmap, ComesBackFromItsPackedBytes)
{
    for (const auto& [width, height] : {std::pair{1u, 1u}, {1u, 200u}, {200u, 1u}, {3u, 2u}, {200u, 133u}}) {
        const auto preview = noisyPreview(width * height, width, height);
        const auto bytes = preview->packed();
        EXPECT_EQ(bytes.size(), 5 + 3 * width * height);
        const auto back = CachedBitmap::unpacked(bytes);
        ASSERT_TRUE(back);
        EXPECT_EQ(back->width(), width);
        EXPECT_EQ(back->height(), height);
        EXPECT_TRUE(std::ranges::equal(back->pixels(), preview->pixels()));
    }
}

TEST(CachedBitmap, DoesNotComeOutOfOtherBytes)
{
    auto bytes = noisyPreview(1, 20, 10)->packed();
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_FALSE(CachedBitmap::unpacked(std::span(bytes).first(size)));
    for (const std::size_t at : {0u, 1u, 2u, 3u, 4u}) {
        auto wrong = bytes;
        wrong[at] ^= std::byte{0x80};
        EXPECT_FALSE(CachedBitmap::unpacked(wrong)) << at;
    }
    bytes.push_back(std::byte{0});
    EXPECT_FALSE(CachedBitmap::unpacked(bytes));
}

// What is left over beside the expected values is what a compressor lives on.
TEST(CachedBitmap, PacksPhotographsIntoSmallNumbers)
{
    const auto bytes = Scene(1).preview(200, 200)->packed();
    const auto small = std::ranges::count_if(bytes, [](std::byte value) {
        const int number = static_cast<std::int8_t>(value);
        return number >= -8 && number <= 8;
    });
    EXPECT_GT(small, static_cast<std::ptrdiff_t>(bytes.size() * 9 / 10));
}

TEST(CachedBitmap, KeepsNothingOfTheByteThatIsIgnored)
{
    std::vector<std::byte> pixels(8, std::byte{0xFF});
    const auto preview = CachedBitmap::make(2, 1, pixels);
    EXPECT_TRUE(std::ranges::equal(preview->pixels(), CachedBitmap::unpacked(preview->packed())->pixels()));
}

}  // namespace
}  // namespace kelvane
