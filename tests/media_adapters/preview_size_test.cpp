#include "platform/linux/media/preview_size.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvane {
namespace {

using linux_os::PictureSize;
using linux_os::previewSize;

PictureSize sizeOf(std::uint32_t width, std::uint32_t height)
{
    return previewSize({width, height}, {});
}

// The sides of copies are rounded to whole pixels, so that their shapes differ by a little.
TEST(PreviewSize, IsTheSameForCopiesInOtherResolutions)
{
    const PictureSize shapes[] = {{4000, 3000}, {6000, 4000}, {3840, 2160}, {2560, 1600}, {5000, 4000}, {3000, 3000},
                                  {4000, 2000}, {3700, 2000}, {5120, 2160}, {5000, 3000}, {2800, 2000}, {3000, 4000}};
    for (const PictureSize& whole : shapes)
        // Hardly larger than the bounds, a side may be too short for its step: nothing is enlarged.
        for (std::uint32_t width = 210; width < whole.width; width += 13) {
            const auto height = static_cast<std::uint32_t>(std::uint64_t{whole.height} * width / whole.width);
            ASSERT_EQ(sizeOf(width, height), sizeOf(whole.width, whole.height)) << width << " of " << whole.width;
            ASSERT_EQ(sizeOf(width, height + 1), sizeOf(whole.width, whole.height)) << width << " of " << whole.width;
        }
    EXPECT_EQ(sizeOf(1365, 768), sizeOf(1920, 1080));
    EXPECT_EQ(sizeOf(1023, 767), sizeOf(4000, 3000));
}

TEST(PreviewSize, KeepsTheShapeNearlyAndNeverEnlarges)
{
    for (std::uint32_t width = 1; width < 1500; width += 7)
        for (std::uint32_t height = 1; height < 1500; height += 11) {
            const PictureSize size = sizeOf(width, height);
            ASSERT_TRUE(size.width >= 1 && size.width <= std::min(width, 200u)) << width << "x" << height;
            ASSERT_TRUE(size.height >= 1 && size.height <= std::min(height, 200u)) << width << "x" << height;
            if (size.width < 20 || size.height < 20)
                continue;
            const double change = double(size.width) * height / (double(size.height) * width);
            ASSERT_NEAR(change, 1, 0.06) << width << "x" << height;
        }
    EXPECT_EQ(sizeOf(200, 150), (PictureSize{200, 150}));
    EXPECT_EQ(sizeOf(7, 3), (PictureSize{7, 3}));
    EXPECT_EQ(sizeOf(1'000'000, 3), (PictureSize{200, 1}));
    EXPECT_EQ(sizeOf(3, 1'000'000), (PictureSize{1, 200}));
}

}  // namespace
}  // namespace kelvane
