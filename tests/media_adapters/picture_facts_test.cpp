#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/crc32.h"
#include "media_adapters/made_files.h"
#include "platform/linux/adapters.h"
#include "platform/linux/media/adapters.h"
#include "support/tiff_maker.h"

namespace kelvane {
namespace {

using ::testing::Contains;
using testing::factsOf;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Key;
using testing::madeBy;
using ::testing::Not;
using ::testing::Pair;
using testing::TiffMaker;
using Facts = std::map<std::string, std::string>;

Facts picture(const std::string& bytes, std::string_view fileName = "picture")
{
    const auto xml = makePugixmlParsing();
    return factsOf(*makePictureFacts(*xml), bytes, fileName);
}

std::string bigEndian(std::size_t value, int size)
{
    std::string bytes;
    for (int i = size - 1; i >= 0; --i)
        bytes += static_cast<char>(value >> 8 * i & 0xFF);
    return bytes;
}

std::string segment(char kind, const std::string& content)
{
    return std::string("\xFF") + kind + bigEndian(content.size() + 2, 2) + content;
}

std::string exifSegment(const std::string& block)
{
    return segment('\xE1', std::string("Exif\0\0", 6) + block);
}

std::string xmpSegment(const std::string& packet)
{
    return segment('\xE1', std::string("http://ns.adobe.com/xap/1.0/\0", 29) + packet);
}

std::string plainJpeg()
{
    static const std::string bytes = madeBy("vips black OUT'[strip]' 64 48 --bands 3", "black.jpg");
    return bytes;
}

std::string jpegWith(const std::string& segments)
{
    return plainJpeg().insert(2, segments);
}

std::string chunk(const std::string& name, const std::string& content)
{
    const std::string named = name + content;
    return bigEndian(content.size(), 4) + named + bigEndian(crc32(std::as_bytes(std::span(named))), 4);
}

constexpr const char* packet = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF><rdf:Description xmp:Rating="3">
  <dc:title><rdf:Alt><rdf:li xml:lang="x-default">XMP title</rdf:li><rdf:li xml:lang="de">Titel</rdf:li></rdf:Alt></dc:title>
  <dc:description><rdf:Alt><rdf:li xml:lang="x-default">x-default</rdf:li></rdf:Alt></dc:description>
  <dc:subject><rdf:Bag><rdf:li>sea</rdf:li> <rdf:li>sky &amp; sun</rdf:li></rdf:Bag></dc:subject>
</rdf:Description></rdf:RDF></x:xmpmeta>)";

const Facts usualFacts = {{"System.Photo.CameraManufacturer", "Maker"},
                          {"System.Photo.CameraModel", "Model 5"},
                          {"System.Photo.DateTaken", "2024-05-17T10:20:30.25Z"},
                          {"System.Photo.ISOSpeed", "400"},
                          {"System.Photo.ExposureTime", "0.004"},
                          {"System.Photo.FNumber", "2.8"},
                          {"System.Photo.FocalLength", "35"},
                          {"System.Photo.FocalLengthInFilm", "52"},
                          {"System.Photo.Orientation", "6"},
                          {"System.Photo.Flash", "16"},
                          {"System.Photo.LensModel", "35mm F2"},
                          {"System.GPS.Latitude", "51; 30; 36"},
                          {"System.GPS.LatitudeRef", "S"},
                          {"System.Title", "Grüße"},
                          {"System.Author", "Anna; Ben"},
                          {"System.Keywords", "Urlaub; Köln"},
                          {"System.Rating", "75"}};

TEST(PictureFacts, ReadWhatACameraWroteInEveryFormatThatCarriesIt)
{
    const std::string block = testing::usualExif().made();
    const std::string jpeg = jpegWith(exifSegment(block));
    EXPECT_THAT(picture(jpeg), IsSupersetOf(usualFacts));
    EXPECT_THAT(picture(jpeg, "wrong.png"), IsSupersetOf(usualFacts));
    EXPECT_THAT(picture(jpegWith(exifSegment(testing::usualExif(true).made()))), IsSupersetOf(usualFacts));
    const Facts kept = {{"System.Photo.CameraModel", "Model 5"}, {"System.GPS.LatitudeRef", "S"}};
    EXPECT_THAT(picture(madeBy("vips webpsave IN OUT", "a.webp", jpeg)), IsSupersetOf(kept));
    EXPECT_THAT(picture(madeBy("vips heifsave IN OUT --compression av1", "a.avif", jpeg)), IsSupersetOf(kept));
    std::string png = madeBy("vips black OUT 20 10", "a.png");
    png.insert(png.find("IDAT") - 4, chunk("eXIf", block));
    EXPECT_THAT(picture(png), IsSupersetOf(usualFacts));
    EXPECT_THAT(picture(block), IsSupersetOf(usualFacts));
}

TEST(PictureFacts, TellSizeDepthAndResolution)
{
    EXPECT_THAT(picture(madeBy("vips black OUT 64 48 --bands 3", "a.jpg")),
                IsSupersetOf(Facts{{"System.Image.HorizontalSize", "64"},
                                   {"System.Image.VerticalSize", "48"},
                                   {"System.Image.Dimensions", "64 x 48"},
                                   {"System.Image.BitDepth", "24"}}));
    const auto depth = [](const std::string& command, std::string_view name) {
        return picture(madeBy(command, name))["System.Image.BitDepth"];
    };
    EXPECT_EQ(depth("vips black OUT 64 48", "a.png"), "8");
    EXPECT_EQ(depth("vips black OUT'[bitdepth=1]' 64 48", "a.png"), "1");
    EXPECT_EQ(depth("vips black OUT 64 48 --bands 4", "a.png"), "32");
    EXPECT_EQ(depth("vips black OUT'[bitdepth=1]' 64 48", "a.tif"), "1");
    EXPECT_EQ(depth("vips black OUT 64 48 --bands 3", "a.webp"), "24");
    EXPECT_EQ(depth("vips black OUT 64 48 --bands 3", "a.gif"), "8");
    const std::string dense = madeBy("vips copy IN OUT --xres 11.811 --yres 11.811", "a.tif", plainJpeg());
    EXPECT_NEAR(std::stod(picture(dense)["System.Image.HorizontalResolution"]), 300, 0.1);
}

// A sensor of 64 x 48 values behind a small picture of 16 x 16, as raw files are.
std::string cameraRaw()
{
    constexpr std::size_t pixels = 64 * 48 * 2;
    const auto maker = [](std::uint32_t pixelsAt) {
        TiffMaker raw = testing::usualExif();
        raw.longs(TiffMaker::picture, 254, {0})
            .longs(TiffMaker::picture, 256, {64})
            .longs(TiffMaker::picture, 257, {48})
            .shorts(TiffMaker::picture, 258, {16})
            .shorts(TiffMaker::picture, 259, {1})
            .shorts(TiffMaker::picture, 262, {32'803})
            .longs(TiffMaker::picture, 273, {pixelsAt})
            .shorts(TiffMaker::picture, 277, {1})
            .longs(TiffMaker::picture, 278, {48})
            .longs(TiffMaker::picture, 279, {pixels})
            .shorts(TiffMaker::picture, 0x828D, {2, 2})
            .claim(TiffMaker::picture, 0x828E, 1, 4, std::string_view("\0\1\1\2", 4))
            .claim(TiffMaker::picture, 0xC612, 1, 4, std::string_view("\1\4\0\0", 4))
            .text(TiffMaker::picture, 0xC614, "Maker Model 5");
        return raw.made();
    };
    return maker(static_cast<std::uint32_t>(maker(0).size())) + std::string(pixels, '\x20');
}

TEST(PictureFacts, AreThoseOfTheSensorForCameraRaws)
{
    const Facts facts = picture(cameraRaw(), "a.dng");
    EXPECT_THAT(facts, IsSupersetOf(usualFacts));
    EXPECT_THAT(facts, IsSupersetOf(Facts{{"System.Image.Dimensions", "64 x 48"}}));
    EXPECT_THAT(facts, Not(Contains(Key("System.Image.BitDepth"))))
        << "that of a picture made from it, which is none yet";
    EXPECT_EQ(picture(cameraRaw(), "under another name.tif"), facts);
}

TEST(PictureFacts, KnowPlainBitmaps)
{
    const std::string bmp =
        madeBy("ffmpeg -nostdin -loglevel error -f lavfi -i color=size=20x10 -frames:v 1 OUT", "a.bmp");
    EXPECT_THAT(picture(bmp),
                IsSupersetOf(Facts{{"System.Image.Dimensions", "20 x 10"}, {"System.Image.BitDepth", "24"}}));
    const std::string tga =
        madeBy("ffmpeg -nostdin -loglevel error -f lavfi -i color=size=20x10 -frames:v 1 OUT", "a.tga");
    EXPECT_EQ(picture(tga, "A.TGA")["System.Image.Dimensions"], "20 x 10");
    EXPECT_THAT(picture(bmp.substr(0, 25)), IsEmpty());
    EXPECT_THAT(picture("BM" + std::string(100, '\xFF')), IsEmpty());
}

TEST(PictureFacts, PreferTheWordsThatProgramsKeepUp)
{
    const std::string iptc = std::string("\x1C\x02\x05\0\x0AIPTC title\x1C\x02\x50\0\4Otto", 24);
    const std::string resources = std::string("Photoshop 3.0\08BIM\4\4\0\0", 22) + bigEndian(iptc.size(), 4) + iptc;
    const std::string segments =
        exifSegment(testing::usualExif().made()) + xmpSegment(packet) + segment('\xED', resources);
    EXPECT_THAT(picture(jpegWith(segments)), IsSupersetOf(Facts{{"System.Title", "XMP title"},
                                                                {"System.Keywords", "sea; sky & sun"},
                                                                {"System.Author", "Anna; Ben"},
                                                                {"System.Comment", "a comment"},
                                                                {"System.Rating", "50"}}));
    EXPECT_THAT(picture(jpegWith(segment('\xED', resources))),
                IsSupersetOf(Facts{{"System.Title", "IPTC title"}, {"System.Author", "Otto"}}));
}

TEST(PictureFacts, AreNoneForWhatIsNoPicture)
{
    EXPECT_THAT(picture(""), IsEmpty());
    EXPECT_THAT(picture("just a text that says nothing of pictures", "a.jpg"), IsEmpty());
    EXPECT_THAT(picture(std::string(100'000, '\0'), "a.png"), IsEmpty());
}

TEST(PictureFacts, SurviveAnyDamage)
{
    const std::string whole = jpegWith(exifSegment(testing::usualExif().made()) + xmpSegment(packet));
    for (std::size_t length = 0; length < 1'800; length += 7)
        (void)picture(whole.substr(0, length));
    EXPECT_THAT(picture(whole.substr(0, 900)), Not(Contains(Key("System.Keywords"))));
}

}  // namespace
}  // namespace kelvane
