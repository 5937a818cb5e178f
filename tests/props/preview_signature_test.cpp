#include "props/preview_signature.h"

#include <gtest/gtest.h>

#include "props/made_up_previews.h"

namespace kelvane {
namespace {

using testing::Colour;
using testing::drawnPreview;
using testing::flatPreview;
using testing::Scene;

PreviewLook look(const Ref<CachedBitmap>& a, const Ref<CachedBitmap>& b)
{
    return secondLook(PreviewSignature::of(*a), PreviewSignature::of(*b));
}

TEST(PreviewSignature, HoldsTheMeansOfTheCells)
{
    const auto signature = PreviewSignature::of(*drawnPreview(32, 64, [](std::uint32_t x, std::uint32_t y) {
        return y < 32 ? Colour{10, 20, 30} : Colour{static_cast<int>(x / 2 * 16), 0, 0};
    }));
    EXPECT_EQ(signature.width, 32);
    EXPECT_EQ(signature.height, 64);
    EXPECT_EQ(signature.brightness[0], 18);  // 0.299 x 10 + 0.587 x 20 + 0.114 x 30
    EXPECT_EQ(signature.brightness[8 * 16 + 10], 48);
    EXPECT_EQ(signature.colours[0], 10);
    EXPECT_EQ(signature.colours[1], 20);
    EXPECT_EQ(signature.colours[2], 30);
    EXPECT_EQ(signature.colours[3 * 15], (12 + 13 + 14 + 15) * 4);
}

TEST(PreviewSignature, ComesBackFromItsPackedBytesAlone)
{
    for (const auto& preview : {flatPreview({1, 2, 3}, 1, 1), flatPreview({250, 2, 3}, 5, 200), Scene(3).preview()}) {
        const auto signature = PreviewSignature::of(*preview);
        auto bytes = signature.packed();
        const auto back = PreviewSignature::unpacked(bytes);
        ASSERT_TRUE(back);
        EXPECT_EQ(*back, signature);
        for (std::size_t size = 0; size < bytes.size(); ++size)
            EXPECT_FALSE(PreviewSignature::unpacked(std::span(bytes).first(size)));
        bytes.push_back(std::byte{0});
        EXPECT_FALSE(PreviewSignature::unpacked(bytes));
        bytes.pop_back();
        bytes[2] = std::byte{1};
        EXPECT_FALSE(PreviewSignature::unpacked(bytes)) << "wider than a preview";
    }
}

// White lettering on a transparent ground is a white sheet: so would be all of it.
TEST(SecondLook, KnowsNoPictureThatIsFlat)
{
    EXPECT_FALSE(look(flatPreview({255, 255, 255}), flatPreview({255, 255, 255})).agrees);
    EXPECT_TRUE(look(flatPreview({90, 120, 150}), flatPreview({90, 120, 150})).flat);
    EXPECT_FALSE(look(Scene(1).preview(), Scene(1).preview()).flat);
    EXPECT_FALSE(look(flatPreview({255, 0, 0}), flatPreview({0, 0, 255})).agrees);
    EXPECT_FALSE(look(flatPreview({0, 0, 0}), flatPreview({40, 40, 40})).agrees);
    EXPECT_FALSE(look(flatPreview({128, 128, 128}), flatPreview({128, 90, 128})).agrees);
    EXPECT_DOUBLE_EQ(look(flatPreview({9, 9, 9}), flatPreview({9, 9, 9})).correlation, 1);
}

TEST(SecondLook, TellsFlatPicturesFromOthers)
{
    const auto slope = drawnPreview(200, 150, [](std::uint32_t x, std::uint32_t) {
        const int grey = 90 + static_cast<int>(x) / 5;
        return Colour{grey, grey, grey};
    });
    EXPECT_FALSE(look(slope, flatPreview({110, 110, 110})).agrees);
    for (unsigned i = 0; i < 20; ++i)
        EXPECT_FALSE(look(Scene(i).preview(), flatPreview({120, 120, 120})).agrees) << i;
}

TEST(SecondLook, LetsCopiesPassThatWereEdited)
{
    for (unsigned i = 0; i < 20; ++i) {
        const Scene scene(i);
        const auto preview = scene.preview();
        EXPECT_TRUE(look(preview, preview).agrees);
        EXPECT_TRUE(look(preview, scene.preview(200, 150, 1.25)).agrees) << i;
        EXPECT_TRUE(look(preview, scene.preview(200, 150, 1, 0.03)).agrees) << i;
        EXPECT_FALSE(look(preview, Scene(i + 100).preview()).agrees) << i;
    }
}

TEST(SecondLook, IsTheSameFromBothSidesAndFalseForDifferentSizes)
{
    const auto a = Scene(1).preview(), b = Scene(2).preview();
    EXPECT_EQ(look(a, b).correlation, look(b, a).correlation);
    EXPECT_EQ(look(a, b).colourDifference, look(b, a).colourDifference);
    EXPECT_FALSE(look(Scene(1).preview(200, 150), Scene(1).preview(200, 149)).agrees);
}

}  // namespace
}  // namespace kelvane
