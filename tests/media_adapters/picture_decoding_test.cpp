#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "media_adapters/made_files.h"
#include "media_adapters/picture_samples.h"

namespace kelvane {
namespace {

using testing::Colour;
using testing::cornersOf;
using testing::cornersPicture;
using testing::differenceOf;
using testing::inFormat;
using testing::landscape;
using testing::madeBy;
using testing::paintedPicture;
using testing::picturePreview;
using testing::pixelAt;
using testing::sizeText;

// An EXIF block (CIPA DC-008) that says nothing but the orientation, behind the first mark of a JPEG.
std::string withOrientation(std::string jpeg, int orientation)
{
    std::string block("\xFF\xE1\x00\x22"
                      "Exif\0\0"
                      "II*\0\x08\0\0\0"
                      "\x01\0"
                      "\x12\x01\x03\0\x01\0\0\0",
                      34 - 6);
    block += static_cast<char>(orientation);
    block += std::string(7, '\0');
    return jpeg.insert(2, block);
}

TEST(PicturePreview, IsTurnedAsTheCameraSays)
{
    const std::string jpeg = inFormat(cornersPicture(640, 320), "a.jpg", "[Q=95]");
    const char* const corners[] = {"RGBY", "GRYB", "YBGR", "BYRG", "RBGY", "BRYG", "YGBR", "GYRB"};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const DecodedPicture preview = picturePreview(withOrientation(jpeg, orientation), "a.jpg");
        EXPECT_EQ(cornersOf(preview), corners[orientation - 1]) << orientation;
        EXPECT_EQ(sizeText(preview), orientation < 5 ? "200x102" : "102x200") << orientation;
    }
    EXPECT_EQ(cornersOf(picturePreview(withOrientation(jpeg, 0), "a.jpg")), "RGBY");
    EXPECT_EQ(cornersOf(picturePreview(withOrientation(jpeg, 99), "a.jpg")), "RGBY");
}

// Some formats are made smaller while they are decoded, others are not.
TEST(PicturePreview, IsNearlyTheSameInEveryFormat)
{
    const std::string ppm = landscape(1200, 900);
    const DecodedPicture expected = picturePreview(ppm, "a.ppm");
    ASSERT_EQ(sizeText(expected), "200x150");
    for (const char* name : {"a.png", "a.tif"})
        EXPECT_EQ(differenceOf(picturePreview(inFormat(ppm, name), name), expected), 0) << name;
    for (const auto& [name, options] : {std::pair{"a.jpg", "[Q=92]"},
                                        {"progressive.jpg", "[Q=92,interlace]"},
                                        {"fine.jpg", "[Q=92,subsample-mode=off]"},
                                        {"a.webp", "[Q=90]"},
                                        {"a.jp2", ""},
                                        {"a.jxl", ""},
                                        {"a.heic", "[Q=80]"},
                                        {"a.png", "[interlace]"}})
        EXPECT_LT(differenceOf(picturePreview(inFormat(ppm, name, options), name), expected), 2) << name;
    for (const char* name : {"a.bmp", "a.tga", "a.pcx"}) {
        const std::string bytes = madeBy("ffmpeg -nostdin -v error -i IN -pix_fmt bgr24 OUT", name, ppm);
        EXPECT_LT(differenceOf(picturePreview(bytes, name), expected), 0.5) << name;
    }
}

TEST(PicturePreview, IsNearlyTheSameInEveryResolution)
{
    const std::string ppm = landscape(1600, 1200);
    const DecodedPicture expected = picturePreview(ppm, "a.ppm");
    for (const auto& [width, height] : {std::pair{1365, 1024}, {1023, 767}, {640, 480}, {403, 302}}) {
        const std::string command =
            "ffmpeg -nostdin -v error -i IN -vf scale=" + std::to_string(width) + ":" + std::to_string(height) + " OUT";
        EXPECT_LT(differenceOf(picturePreview(madeBy(command, "a.png", ppm), "a.png"), expected), 1) << width;
    }
}

TEST(PicturePreview, KeepsSmallPicturesToThePixel)
{
    const std::string ppm = landscape(200, 131);
    const DecodedPicture preview = picturePreview(inFormat(ppm, "a.png"), "a.png");
    ASSERT_EQ(sizeText(preview), "200x131");
    const std::string pixels = ppm.substr(ppm.size() - std::size_t{200} * 131 * 3);
    for (std::uint32_t i = 0; i < 200u * 131; ++i)
        for (std::size_t channel = 0; channel < 3; ++channel)
            ASSERT_EQ(pixelAt(preview, i % 200, i / 200)[channel], static_cast<unsigned char>(pixels[3 * i + channel]));
    EXPECT_EQ(sizeText(picturePreview(inFormat(landscape(1, 1), "a.png"), "a.png")), "1x1");
    EXPECT_EQ(sizeText(picturePreview(inFormat(landscape(2000, 3), "a.png"), "a.png")), "200x1");
}

TEST(PicturePreview, ShowsTransparentPartsOnWhite)
{
    const std::string grey = paintedPicture(64, 64, [](auto, auto) { return Colour{100, 100, 100}; });
    const auto through = [&](const std::string& alpha, const char* name) {
        return pixelAt(picturePreview(madeBy("vips bandjoin_const IN OUT " + alpha, name, grey), name), 20, 20);
    };
    EXPECT_EQ(through("0", "a.png"), (Colour{255, 255, 255}));
    EXPECT_EQ(through("255", "a.png"), (Colour{100, 100, 100}));
    EXPECT_NEAR(through("128", "a.png")[0], 177, 2);
    EXPECT_NEAR(through("128", "a.webp")[0], 177, 4);
    EXPECT_NEAR(through("128", "a.tif")[0], 177, 2);
}

TEST(PicturePreview, UnderstandsEveryKindOfColour)
{
    const std::string ppm = cornersPicture(400, 400);
    const auto made = [&](const std::string& command, const char* name) {
        return cornersOf(picturePreview(madeBy(command, name, ppm), name));
    };
    EXPECT_EQ(made("vips colourspace IN OUT rgb16", "a.png"), "RGBY");
    EXPECT_EQ(made("vips colourspace IN OUT rgb16", "a.tif"), "RGBY");
    EXPECT_EQ(made("vips copy IN OUT[palette]", "a.png"), "RGBY");
    EXPECT_EQ(made("ffmpeg -nostdin -v error -i IN OUT", "a.gif"), "RGBY");
    EXPECT_EQ(made("vips colourspace IN OUT lab", "a.tif"), "RGBY");
    const std::string white = paintedPicture(300, 300, [](auto x, auto) {
        return Colour{255, x < 150 ? 255 : 0, 255};
    });
    const DecodedPicture inks = picturePreview(madeBy("vips colourspace IN OUT cmyk", "a.jpg", white), "a.jpg");
    EXPECT_GT(pixelAt(inks, 20, 100)[1], 245);
    EXPECT_LT(pixelAt(inks, 180, 100)[1], 150);
    const DecodedPicture grey = picturePreview(madeBy("vips colourspace IN OUT b-w", "a.jpg", ppm), "a.jpg");
    EXPECT_EQ(pixelAt(grey, 20, 20)[0], pixelAt(grey, 20, 20)[2]);
}

TEST(PicturePreview, IsOfTheFirstPictureOfAnAnimation)
{
    const std::string colours = "ffmpeg -nostdin -v error -f lavfi -i color=0xFA0A0A:s=300x300:r=2:d=1 -f lavfi -i "
                                "color=0x0A0AFA:s=300x300:r=2:d=3 -filter_complex concat=n=2 ";
    EXPECT_EQ(cornersOf(picturePreview(madeBy(colours + "OUT", "a.gif"), "a.gif")), "RRRR");
    EXPECT_EQ(cornersOf(picturePreview(madeBy(colours + "-f apng OUT", "a.apng"), "a.apng")), "RRRR");
    EXPECT_EQ(cornersOf(picturePreview(madeBy(colours + "-loop 0 OUT", "a.webp"), "a.webp")), "RRRR");
}

TEST(PicturePreview, IsTheSameHoweverOftenItIsMade)
{
    for (const char* name : {"a.jpg", "a.webp", "a.heic", "a.tif"}) {
        const std::string bytes = inFormat(landscape(650, 450), name);
        EXPECT_EQ(picturePreview(bytes, name).pixels, picturePreview(bytes, name).pixels) << name;
    }
}

}  // namespace
}  // namespace kelvane
