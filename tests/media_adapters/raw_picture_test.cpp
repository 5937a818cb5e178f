#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "media_adapters/made_files.h"
#include "media_adapters/picture_samples.h"

namespace kelvane {
namespace {

using testing::Colour;
using testing::picturePreview;
using testing::pixelAt;
using testing::sizeText;

// A directory of TIFF with the marks of DNG ("Digital Negative Specification", Adobe) over one sensor's values.
class Negative {
public:
    Negative(std::uint32_t width, std::uint32_t height, std::uint32_t orientation) : width_(width), height_(height)
    {
        number(254, 4, {0});
        number(256, 4, {width});
        number(257, 4, {height});
        number(258, 3, {16});
        number(259, 3, {1});
        number(262, 3, {32803});  // a mosaic of coloured sensors
        bytes(271, 2, std::string("Maker\0", 6));
        bytes(272, 2, std::string("Model\0", 6));
        number(273, 4, {dataStart});
        number(274, 3, {orientation});
        number(277, 3, {1});
        number(278, 4, {height});
        number(279, 4, {width * height * 2});
        number(33421, 3, {2, 2});
        bytes(33422, 1, std::string("\0\1\1\2", 4));
        bytes(50706, 1, std::string("\1\4\0\0", 4));
        bytes(50708, 2, std::string("Maker Model\0", 12));
        number(50714, 3, {0});
        number(50717, 3, {65535});
        number(50721, 10, {32405, 10000, 0, 1, 0, 1, 0, 1, 1, 1, 0, 1, 0, 1, 0, 1, 1, 1});
        number(50728, 5, {1, 1, 1, 1, 1, 1});
        number(50778, 3, {21});
    }

    // Red on the left, blue on the right.
    [[nodiscard]] std::string made() const
    {
        std::string file = "II*" + std::string(1, '\0') + little(8, 4) + little(count_, 2) + directory_ + little(0, 4);
        const std::size_t outside = file.size();
        EXPECT_EQ(outside, 8 + 2 + 12u * expectedTags + 4);
        file += outside_;
        file.resize(dataStart);
        for (std::uint32_t y = 0; y < height_; ++y)
            for (std::uint32_t x = 0; x < width_; ++x) {
                const bool red = x % 2 == 0 && y % 2 == 0;
                const bool blue = x % 2 == 1 && y % 2 == 1;
                const bool bright = x < width_ / 2 ? red : blue;
                file += little(bright ? 40'000 : 2'000, 2);
            }
        return file;
    }

private:
    static constexpr std::uint32_t dataStart = 4096;
    static constexpr std::uint32_t expectedTags = 22;

    static std::string little(std::uint32_t value, int length)
    {
        std::string text;
        for (; length > 0; --length, value >>= 8)
            text += static_cast<char>(value & 0xFF);
        return text;
    }
    void number(std::uint32_t tag, std::uint32_t type, const std::vector<std::uint32_t>& values)
    {
        const bool rational = type == 5 || type == 10;
        std::string packed;
        for (const std::uint32_t value : values)
            packed += little(value, type == 3 ? 2 : 4);
        entry(tag, type, static_cast<std::uint32_t>(values.size() / (rational ? 2 : 1)), packed);
    }
    void bytes(std::uint32_t tag, std::uint32_t type, const std::string& values)
    {
        entry(tag, type, static_cast<std::uint32_t>(values.size()), values);
    }
    void entry(std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::string packed)
    {
        constexpr std::uint32_t outsideStart = 8 + 2 + 12 * expectedTags + 4;
        if (packed.size() > 4) {
            const auto at = outsideStart + static_cast<std::uint32_t>(outside_.size());
            outside_ += packed + std::string(packed.size() % 2, '\0');
            packed = little(at, 4);
        }
        packed.resize(4);
        directory_ += little(tag, 2) + little(type, 2) + little(count, 4) + packed;
        ++count_;
    }

    std::uint32_t width_;
    std::uint32_t height_;
    std::uint32_t count_ = 0;
    std::string directory_;
    std::string outside_;
};

TEST(RawPicture, IsDevelopedFromTheSensor)
{
    const DecodedPicture preview = picturePreview(Negative(1600, 1200, 1).made(), "a.dng");
    ASSERT_EQ(sizeText(preview), "200x150");
    const Colour left = pixelAt(preview, 30, 70);
    const Colour right = pixelAt(preview, 170, 70);
    EXPECT_GT(left[0], left[2] + 60);
    EXPECT_GT(right[2], right[0] + 60);
}

TEST(RawPicture, IsTurnedAndSmallOnesAreNotHalved)
{
    EXPECT_EQ(sizeText(picturePreview(Negative(1600, 1200, 6).made(), "a.dng")), "150x200");
    EXPECT_EQ(sizeText(picturePreview(Negative(400, 300, 1).made(), "a.dng")), "200x150");
    const std::string file = Negative(400, 300, 1).made();
    EXPECT_EQ(picturePreview(file, "a.dng").pixels, picturePreview(file, "A.DNG").pixels);
}

TEST(RawPicture, IsNotTakenForTheSmallPictureBesideIt)
{
    const std::string file = Negative(1600, 1200, 1).made();
    EXPECT_EQ(picturePreview(file.substr(0, file.size() / 2), "a.dng").fault.outcome, MediaOutcome::damaged);
    // TIFF that no camera wrote, under a camera's name.
    const std::string tiff = testing::inFormat(testing::landscape(300, 200), "a.tif");
    EXPECT_TRUE(picturePreview(tiff, "a.nef").pixels.empty());
}

TEST(RawPicture, OfHugeDimensionsIsNotDecoded)
{
    EXPECT_EQ(picturePreview(Negative(400, 300, 1).made(), "a.dng", {.pixels = 100'000}).fault.outcome,
              MediaOutcome::tooLarge);
}

}  // namespace
}  // namespace kelvane
