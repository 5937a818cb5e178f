#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "media_adapters/made_files.h"
#include "media_adapters/picture_samples.h"
#include "media_adapters/sound_samples.h"

namespace kelvane {
namespace {

using testing::cornersOf;
using testing::cornersPicture;
using testing::differenceOf;
using testing::filmPreview;
using testing::inFormat;
using testing::landscape;
using testing::madeBy;
using testing::sizeText;

constexpr const char* ffmpeg = "ffmpeg -nostdin -v error ";

// Ten seconds in which the picture moves, so that frames of other times differ.
std::string film(std::string_view fileName, const std::string& options = "-c:v mpeg4 -q:v 3")
{
    return madeBy(ffmpeg + std::string("-f lavfi -i testsrc2=s=320x180:r=25:d=10 ") + options + " OUT", fileName);
}

std::string again(const std::string& bytes, std::string_view fileName, const std::string& options)
{
    return madeBy(ffmpeg + std::string("-i IN ") + options + " OUT", fileName, bytes);
}

MediaOutcome outcomeOf(const std::string& bytes, std::string_view fileName)
{
    return filmPreview(bytes, fileName).fault.outcome;
}

TEST(FilmPreview, IsNearlyTheSameOfEveryCopy)
{
    const std::string original = film("a.mp4", "-c:v libx264 -preset ultrafast -crf 18");
    const DecodedPicture expected = filmPreview(original, "a.mp4");
    ASSERT_EQ(sizeText(expected), "200x110");
    for (const char* name : {"a.mkv", "a.flv", "a.mov", "a.ts"})
        EXPECT_EQ(filmPreview(again(original, name, "-c copy"), name).pixels, expected.pixels) << name;
    for (const auto& [name, options] : {std::pair{"a.avi", "-c:v mpeg4 -q:v 3 -g 300"},
                                        {"b.mp4", "-vf scale=480:270 -c:v libx264 -preset ultrafast"},
                                        {"a.mpg", "-c:v mpeg2video -q:v 3 -g 12"},
                                        {"c.mp4", "-r 50 -c:v mpeg4 -q:v 3 -bf 2"},
                                        {"a.webm", "-c:v libvpx -b:v 2M -deadline realtime -cpu-used 8"},
                                        {"a.wmv", "-c:v wmv2 -q:v 3"}})
        EXPECT_LT(differenceOf(filmPreview(again(original, name, options), name), expected), 6) << name;
}

// The difference above means something only if frames of other times differ by much more.
TEST(FilmPreview, IsOfAPlaceThatDependsOnTheLength)
{
    const std::string original = film("a.mp4");
    const DecodedPicture shortened = filmPreview(again(original, "b.mp4", "-t 5 -c:v mpeg4 -q:v 3"), "b.mp4");
    EXPECT_GT(differenceOf(shortened, filmPreview(original, "a.mp4")), 6);
}

TEST(FilmPreview, PassesOverBlackParts)
{
    const std::string black = film("a.mp4", "-vf \"drawbox=c=black:t=fill:enable='lt(t,3)'\" -c:v mpeg4 -q:v 3");
    const DecodedPicture preview = filmPreview(black, "a.mp4");
    ASSERT_EQ(sizeText(preview), "200x110");
    const auto whole = film("c.mp4", "-vf \"drawbox=c=black:t=fill\" -c:v mpeg4 -q:v 3");
    EXPECT_GT(differenceOf(preview, filmPreview(whole, "c.mp4")), 30);
    EXPECT_EQ(sizeText(filmPreview(whole, "c.mp4")), "200x110");  // black from beginning to end is black
}

TEST(FilmPreview, IsTurnedAndHasSquarePixels)
{
    const std::string still = "-loop 1 -i IN -t 2 -r 10 -c:v mpeg4 -q:v 2 ";
    const auto made = [&](const std::string& options) {
        return madeBy(ffmpeg + still + options + " OUT", "a.mp4", inFormat(cornersPicture(640, 320), "a.png"));
    };
    const std::string plain = made("");
    EXPECT_EQ(cornersOf(filmPreview(plain, "a.mp4")), "RGBY");
    // The directions are those in which the command itself would turn the film when it decodes it.
    for (const char* angle : {"90", "180", "270"}) {
        const std::string turned = again(plain, "a.mp4", std::string("-c copy -metadata:s:v:0 rotate=") + angle);
        const std::string applied = again(turned, "b.mp4", "-c:v mpeg4 -q:v 2");
        EXPECT_NE(cornersOf(filmPreview(turned, "a.mp4")), "RGBY") << angle;
        EXPECT_EQ(cornersOf(filmPreview(turned, "a.mp4")), cornersOf(filmPreview(applied, "b.mp4"))) << angle;
        EXPECT_EQ(sizeText(filmPreview(turned, "a.mp4")), sizeText(filmPreview(applied, "b.mp4"))) << angle;
    }
    EXPECT_EQ(sizeText(filmPreview(made("-vf scale=320:320,setsar=2"), "a.mp4")), "200x102");
    EXPECT_EQ(sizeText(filmPreview(made("-vf scale=640:160,setsar=1/2"), "a.mp4")), "200x102");
    EXPECT_EQ(sizeText(filmPreview(made("-vf scale=120:60"), "a.mp4")), "120x60");
}

// Recordings that were never closed say nothing of their length.
TEST(FilmPreview, DoesWithoutALengthAndWithoutAnIndex)
{
    const std::string original = film("a.mp4");
    const std::string endless =
        madeBy(ffmpeg + std::string("-i IN -c copy -f matroska -live 1 - | cat > OUT"), "a.mkv", original);
    EXPECT_EQ(filmPreview(endless, "a.mkv").pixels, filmPreview(original, "a.mp4").pixels);
}

TEST(FilmPreview, OfWhatIsNoFilm)
{
    EXPECT_EQ(outcomeOf(testing::wavFile(testing::tone(440, 2)), "a.avi"), MediaOutcome::nothingThere);
    const std::string song =
        madeBy("cat IN > OUT.png; ffmpeg -nostdin -v error -f lavfi -i sine=d=3 -i OUT.png -map 0 -map 1 "
               "-c:v copy -disposition:v attached_pic OUT",
               "a.mp3", inFormat(landscape(300, 300), "a.png"));
    EXPECT_EQ(outcomeOf(song, "a.mp3"), MediaOutcome::nothingThere);  // a cover does not move
    EXPECT_EQ(outcomeOf("", "a.mp4"), outcomeOf("", "a.mkv"));
    EXPECT_NE(outcomeOf("", "a.mp4"), MediaOutcome::made);
    EXPECT_NE(outcomeOf(std::string(5000, 'x'), "a.mkv"), MediaOutcome::made);
}

TEST(FilmPreview, OfWhatBreaksOff)
{
    const std::string original = film("a.mp4");
    EXPECT_EQ(outcomeOf(original.substr(0, original.size() / 2), "a.mp4"), MediaOutcome::damaged);
    // The place is in the half that is there, and the length stands in front.
    const std::string other = again(original, "a.mkv", "-c copy");
    EXPECT_EQ(filmPreview(other.substr(0, other.size() / 2), "a.mkv").pixels, filmPreview(other, "a.mkv").pixels);
    for (std::size_t length = 0; length < other.size(); length += 1 + other.size() / 20)
        static_cast<void>(outcomeOf(other.substr(0, length), "a.mkv"));
}

}  // namespace
}  // namespace kelvane
