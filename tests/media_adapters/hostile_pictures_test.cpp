#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "media_adapters/made_files.h"
#include "media_adapters/picture_samples.h"
#include "platform/linux/media/adapters.h"
#include "support/bytes_file.h"
#include "support/temp_tree.h"

namespace kelvane {
namespace {

using testing::BytesFile;
using testing::Colour;
using testing::cornersOf;
using testing::cornersPicture;
using testing::inFormat;
using testing::landscape;
using testing::paintedPicture;
using testing::picturePreview;
using testing::pixelAt;
using testing::sizeText;
using testing::TempTree;

MediaOutcome outcomeOf(const std::string& bytes, std::string_view fileName, const PreviewBounds& bounds = {})
{
    const DecodedPicture preview = picturePreview(bytes, fileName, bounds);
    EXPECT_EQ(preview.pixels.empty(), preview.fault.outcome != MediaOutcome::made) << fileName;
    return preview.fault.outcome;
}

// What the header says, with the check sum of its chunk (ISO/IEC 15948) left wrong or right.
std::string pngOf(const std::string& sizeAndSum)
{
    return std::string("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16) + sizeAndSum + std::string("\0\0\0\0IDAT", 8);
}

TEST(HostilePictures, OfHugeDimensionsAreToldAtOnce)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string square("\0\x01\x86\xA0\0\x01\x86\xA0\x08\x02\0\0\0\xED\xB3\xC6\xE4", 17);
    EXPECT_NE(outcomeOf(pngOf(square), "a.png"), MediaOutcome::made);
    EXPECT_EQ(outcomeOf("P6\n100000 100000\n255\n", "a.ppm"), MediaOutcome::tooLarge);
    std::string gif = inFormat(landscape(20, 20), "a.gif");
    gif.replace(6, 4, "\xFF\xFF\xFF\xFF");
    static_cast<void>(outcomeOf(gif, "a.gif"));  // the frames tell how large it is
    std::string jpeg = inFormat(landscape(20, 20), "a.jpg");
    jpeg.replace(jpeg.find("\xFF\xC0") + 5, 4, "\xFF\xDC\xFF\xDC");
    EXPECT_EQ(outcomeOf(jpeg, "a.jpg"), MediaOutcome::tooLarge);
    std::string bmp(60, '\0');
    bmp.replace(0, 2, "BM").replace(14, 1, "\x28").replace(20, 1, "\x7F").replace(24, 1, "\x7F");
    EXPECT_EQ(outcomeOf(bmp, "a.bmp"), MediaOutcome::tooLarge);
    EXPECT_EQ(outcomeOf("<svg xmlns='http://www.w3.org/2000/svg' width='99999' height='99999'/>", "a.svg"),
              MediaOutcome::tooLarge);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(HostilePictures, BeyondTheBudgetOfTheCallerAreTooLarge)
{
    const std::string png = inFormat(landscape(30, 30), "a.png");
    EXPECT_EQ(outcomeOf(png, "a.png", {.pixels = 899}), MediaOutcome::tooLarge);
    EXPECT_EQ(outcomeOf(png, "a.png", {.pixels = 900}), MediaOutcome::made);
}

// The lower part of a picture is missing: two different ones may have the same upper part.
TEST(HostilePictures, ThatBreakOffAreDamaged)
{
    for (const char* name : {"a.jpg", "a.png", "a.webp", "a.tif", "a.heic", "a.jxl", "a.jp2", "a.ppm"}) {
        const std::string whole = inFormat(landscape(500, 400), name);
        ASSERT_EQ(outcomeOf(whole, name), MediaOutcome::made) << name;
        EXPECT_EQ(outcomeOf(whole.substr(0, whole.size() * 3 / 5), name), MediaOutcome::damaged) << name;
    }
}

TEST(HostilePictures, OfAnyLengthGiveAnAnswer)
{
    for (const char* name : {"a.jpg", "a.png", "a.webp", "a.tif", "a.gif"}) {
        const std::string whole = inFormat(landscape(60, 40), name);
        for (std::size_t length = 0; length < whole.size(); length += 1 + whole.size() / 40)
            static_cast<void>(outcomeOf(whole.substr(0, length), name));
        for (std::size_t at = 0; at < whole.size(); at += 1 + whole.size() / 40) {
            std::string changed = whole;
            changed[at] = static_cast<char>(~changed[at]);
            static_cast<void>(outcomeOf(changed, name));
        }
    }
}

TEST(HostilePictures, AreKnownByTheirContent)
{
    EXPECT_EQ(cornersOf(picturePreview(inFormat(cornersPicture(300, 300), "a.png"), "a.jpg")), "RGBY");
    EXPECT_EQ(cornersOf(picturePreview(inFormat(cornersPicture(300, 300), "a.jpg"), "a.nef")), "RGBY");
    EXPECT_EQ(outcomeOf("", "a.jpg"), MediaOutcome::unknownFormat);
    EXPECT_EQ(outcomeOf("", "a.dng"), MediaOutcome::damaged);
    EXPECT_EQ(outcomeOf(std::string(10'000, 'x'), "a.jpg"), MediaOutcome::unknownFormat);
    EXPECT_EQ(outcomeOf("%PDF-1.4\n%%EOF", "a.png"), MediaOutcome::unknownFormat);
    EXPECT_EQ(outcomeOf("1,2,3\n4,5,6\n", "a.csv"), MediaOutcome::unknownFormat);
}

TEST(HostilePictures, OfVectorsReadNoOtherFile)
{
    const TempTree tree;
    tree.write("secret.png", inFormat(paintedPicture(100, 100, [](auto, auto) { return Colour{0, 0, 0}; }), "a.png"));
    const std::string path = tree.path("secret.png").string();
    const std::string start = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                              "width='100' height='100'><rect width='100' height='100' fill='#fff'/>";
    for (const std::string& reference : {path, "file://" + path}) {
        const std::string svg =
            start + "<image width='100' height='100' xlink:href='" + reference + "' href='" + reference + "'/></svg>";
        const DecodedPicture preview = picturePreview(svg, "a.svg");
        ASSERT_EQ(sizeText(preview), "100x100");
        EXPECT_EQ(pixelAt(preview, 50, 50), (Colour{255, 255, 255}));
    }
    const DecodedPicture drawn = picturePreview(start + "<circle r='40' cx='50' cy='50' fill='#f00'/></svg>", "a.svg");
    EXPECT_EQ(pixelAt(drawn, 50, 50), (Colour{255, 0, 0}));
}

TEST(HostilePictures, OfVectorsDoNotGrowWithoutEnd)
{
    std::string entities = "<!ENTITY a0 'aaaaaaaaaa'>";
    for (int i = 1; i < 20; ++i) {
        std::string ten;
        for (int j = 0; j < 10; ++j)
            ten += "&a" + std::to_string(i - 1) + ";";
        entities += "<!ENTITY a" + std::to_string(i) + " '" + ten + "'>";
    }
    const std::string svg = "<!DOCTYPE svg [" + entities +
                            "]><svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'><text>&a19;</text></svg>";
    EXPECT_NE(outcomeOf(svg, "a.svg"), MediaOutcome::made);
}

TEST(HostilePictures, ThatCannotBeReadAreNotCalledDamaged)
{
    class Failing final : public BytesFile {
    public:
        using BytesFile::BytesFile;
        Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
        {
            if (position + buffer.size() > 3000)
                return Error{};
            return BytesFile::readAt(position, buffer);
        }
    };
    for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
        Failing file(inFormat(landscape(500, 400), name));
        EXPECT_EQ(makeVipsPictureDecoding()->preview(file, name, {}).fault.outcome, MediaOutcome::unreadable) << name;
    }
}

}  // namespace
}  // namespace kelvane
