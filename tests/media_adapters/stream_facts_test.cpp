#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "media_adapters/made_files.h"
#include "media_adapters/sound_samples.h"
#include "platform/linux/media/adapters.h"

namespace kelvane {
namespace {

using testing::factsOf;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using testing::madeBy;
using testing::tone;
using testing::tune;
using testing::wavFile;
using Facts = std::map<std::string, std::string>;

constexpr const char* ffmpeg = "ffmpeg -nostdin -loglevel error ";

Facts streamFacts(const std::string& bytes, std::string_view fileName)
{
    return factsOf(*makeFfmpegFacts(), bytes, fileName);
}

double secondsOf(const Facts& facts)
{
    const auto found = facts.find("System.Media.Duration");
    return found == facts.end() ? -1 : std::stod(found->second) / 1e7;
}

std::string sound(std::string_view fileName, const std::string& options)
{
    return madeBy(ffmpeg + std::string("-i IN ") + options + " OUT", fileName, wavFile(tune(1, 8), {.rate = 44'100}));
}

std::string film(std::string_view fileName, const std::string& options)
{
    return madeBy(ffmpeg + std::string("-f lavfi -i testsrc=s=320x180:r=30000/1001 -f lavfi -i sine=r=48000 -t 2 ") +
                      options + " OUT",
                  fileName);
}

TEST(StreamFacts, OfAPlainWavAreExact)
{
    EXPECT_THAT(streamFacts(wavFile(tone(440, 4)), "a.wav"),
                IsSupersetOf(Facts{{"System.Media.Duration", "40000000"},
                                   {"System.Audio.EncodingBitrate", "176400"},
                                   {"System.Audio.SampleRate", "11025"},
                                   {"System.Audio.SampleSize", "16"},
                                   {"System.Audio.ChannelCount", "1"},
                                   {"System.Audio.Format", "{00000001-0000-0010-8000-00AA00389B71}"}}));
}

TEST(StreamFacts, TellTheLengthOfEveryUsualKindOfSound)
{
    for (const char* name : {"a.mp3", "a.flac", "a.ogg", "a.opus", "a.m4a", "a.aac", "a.wma", "a.aiff", "a.mka"}) {
        const Facts facts = streamFacts(sound(name, ""), name);
        EXPECT_NEAR(secondsOf(facts), 8, 0.1) << name;
        EXPECT_EQ(facts.count("System.Audio.EncodingBitrate"), 1u) << name;
        EXPECT_EQ(facts.count("System.Audio.Compression"), 1u) << name;
        EXPECT_EQ(facts.count("System.Video.FrameWidth"), 0u) << name;
    }
}

TEST(StreamFacts, TellEvenFromVariableBitRates)
{
    Facts facts = streamFacts(sound("a.mp3", "-b:a 192k"), "a.mp3");
    EXPECT_THAT(facts, IsSupersetOf(Facts{{"System.Audio.IsVariableBitRate", "False"},
                                          {"System.Audio.EncodingBitrate", "192000"}}));
    facts = streamFacts(sound("a.mp3", "-q:a 4"), "a.mp3");
    EXPECT_EQ(facts["System.Audio.IsVariableBitRate"], "True");
}

// A guess from the first frame's rate would be off by far.
TEST(StreamFacts, CountAVariableSoundThatDoesNotSayHowLongItIs)
{
    const std::string bytes = sound("a.mp3", "-af 'volume=if(lt(t\\,6)\\,0\\,1):eval=frame' -q:a 4 -write_xing 0");
    EXPECT_NEAR(secondsOf(streamFacts(bytes, "a.mp3")), 8, 0.1);
}

TEST(StreamFacts, DoNotBelieveALengthThatTheFileHasNoRoomFor)
{
    const std::string bytes = wavFile(tone(440, 8));
    EXPECT_NEAR(secondsOf(streamFacts(bytes.substr(0, bytes.size() / 2), "a.wav")), 4, 0.01);
}

TEST(StreamFacts, OfFilmsNameFramesAndRates)
{
    for (const char* name : {"a.mp4", "a.mkv", "a.avi", "a.mov"}) {
        const Facts facts = streamFacts(film(name, "-c:v mpeg4 -b:v 300k"), name);
        EXPECT_THAT(facts, IsSupersetOf(Facts{{"System.Video.FrameWidth", "320"},
                                              {"System.Video.FrameHeight", "180"},
                                              {"System.Video.FrameRate", "29970"},
                                              {"System.Audio.SampleRate", "48000"},
                                              {"System.Video.Compression", "MPEG-4 part 2"}}))
            << name;
        EXPECT_NEAR(secondsOf(facts), 2, 0.1) << name;
        EXPECT_EQ(facts.count("System.Video.TotalBitrate"), 1u) << name;
        EXPECT_EQ(facts.count("System.Video.FourCC"), 1u) << name;
    }
}

TEST(StreamFacts, ReadTheWordsOfContainersOfFilms)
{
    const std::string words = "-c:v mpeg4 -metadata title='Der Film; Teil 2' -metadata director='Anna B.;Carl D.' "
                              "-metadata date=1999-05-01 -metadata comment='so; so' -metadata genre=Drama "
                              "-metadata artist=Jemand -metadata creation_time=2020-02-03T04:05:06Z ";
    EXPECT_THAT(streamFacts(film("a.mkv", words), "a.mkv"),
                IsSupersetOf(Facts{{"System.Title", "Der Film; Teil 2"},
                                   {"System.Video.Director", "Anna B.; Carl D."},
                                   {"System.Media.Year", "1999"},
                                   {"System.Comment", "so; so"},
                                   {"System.Music.Genre", "Drama"},
                                   {"System.Music.Artist", "Jemand"}}));
    EXPECT_THAT(streamFacts(film("a.avi", words), "a.avi"), IsSupersetOf(Facts{{"System.Title", "Der Film; Teil 2"},
                                                                               {"System.Media.Year", "1999"},
                                                                               {"System.Comment", "so; so"}}));
    EXPECT_EQ(streamFacts(film("a.mp4", words), "a.mp4").count("System.Media.DateEncoded"), 1u);
}

TEST(StreamFacts, DoNotTakeACoverForAFilm)
{
    const std::string cover = madeBy(ffmpeg + std::string("-f lavfi -i testsrc=s=64x64 -frames:v 1 OUT"), "c.png");
    const std::string bytes = madeBy(
        ffmpeg + std::string("-i IN -f lavfi -t 2 -i sine -map 1 -map 0 -c:v copy -disposition:v attached_pic OUT"),
        "a.mp3", cover);
    const Facts facts = streamFacts(bytes, "a.mp3");
    EXPECT_EQ(facts.count("System.Video.FrameWidth"), 0u);
    EXPECT_NEAR(secondsOf(facts), 2, 0.1);
}

TEST(StreamFacts, OfSomethingElseThereAreNone)
{
    EXPECT_THAT(streamFacts("", "a.mp3"), IsEmpty());
    EXPECT_THAT(streamFacts("Only words, and not even many of them.\n", "a.wav"), IsEmpty());
    EXPECT_THAT(streamFacts(std::string(100'000, '\0'), "a.mp4"), IsEmpty());
}

}  // namespace
}  // namespace kelvane
