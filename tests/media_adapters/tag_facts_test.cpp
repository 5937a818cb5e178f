#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "media_adapters/made_files.h"
#include "platform/linux/media/adapters.h"

namespace kelvane {
namespace {

using testing::factsOf;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using testing::madeBy;
using ::testing::Not;
using ::testing::Pair;
using Facts = std::map<std::string, std::string>;

Facts tagsOf(const std::string& bytes, std::string_view fileName)
{
    return factsOf(*makeTaglibFacts(), bytes, fileName);
}

// A fifth of a second of silence with such tags.
std::string sound(std::string_view fileName, const std::string& options)
{
    return madeBy("ffmpeg -nostdin -loglevel error -f lavfi -i anullsrc=r=44100:cl=mono -t 0.2 " + options + " OUT",
                  fileName);
}

constexpr const char* usualTags =
    "-metadata title='Grüße aus Köln' -metadata artist='Jemand' -metadata album='Das Album' "
    "-metadata album_artist='Alle' -metadata genre='Rock' -metadata date=2004 -metadata track=3/12 "
    "-metadata composer='Niemand' -metadata comment='Nur so' ";

const Facts titleArtistAlbum = {
    {"System.Title", "Grüße aus Köln"}, {"System.Music.Artist", "Jemand"}, {"System.Music.AlbumTitle", "Das Album"}};

const Facts usualFacts = {{"System.Title", "Grüße aus Köln"},
                          {"System.Music.Artist", "Jemand"},
                          {"System.Music.AlbumTitle", "Das Album"},
                          {"System.Music.AlbumArtist", "Alle"},
                          {"System.Music.Genre", "Rock"},
                          {"System.Media.Year", "2004"},
                          {"System.Music.TrackNumber", "3"},
                          {"System.Music.Composer", "Niemand"},
                          {"System.Comment", "Nur so"}};

struct Format {
    const char* name;
    const char* options;
    const Facts& expected;
};

class TagsOfFormat : public ::testing::TestWithParam<Format> {};

TEST_P(TagsOfFormat, AreReadWhateverTheFileIsCalled)
{
    const std::string bytes = sound(GetParam().name, std::string(usualTags) + GetParam().options);
    EXPECT_THAT(tagsOf(bytes, GetParam().name), IsSupersetOf(GetParam().expected));
    EXPECT_THAT(tagsOf(bytes, "wrong.mp3"), IsSupersetOf(GetParam().expected));
    EXPECT_THAT(tagsOf(bytes, "without extension"), IsSupersetOf(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Formats, TagsOfFormat,
    ::testing::Values(Format{"v23.mp3", "-id3v2_version 3", usualFacts}, Format{"v24.mp3", "", usualFacts},
                      Format{"a.m4a", "", usualFacts}, Format{"a.ogg", "-c:a libvorbis", usualFacts},
                      Format{"a.opus", "-c:a libopus -ar 48000", usualFacts}, Format{"a.flac", "", usualFacts},
                      Format{"a.oga", "-c:a flac", usualFacts}, Format{"a.spx", "-c:a libspeex -ar 16000", usualFacts},
                      Format{"a.wma", "", usualFacts}, Format{"a.wv", "", usualFacts},
                      Format{"a.aiff", "-write_id3v2 1", usualFacts}, Format{"a.wav", "", titleArtistAlbum}),
    [](const auto& format) {
        std::string name = format.param.name;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

std::string synchsafe(std::size_t size)
{
    std::string bytes;
    for (int i = 3; i >= 0; --i)
        bytes += static_cast<char>(size >> 7 * i & 0x7F);
    return bytes;
}

// Text of a charset by its number: 0 Latin-1, 1 UTF-16, 3 UTF-8.
std::string frame(const std::string& name, char charset, const std::string& text)
{
    const std::string content = charset + text;
    return name + synchsafe(content.size()) + std::string(2, '\0') + content;
}

std::string id3(char version, const std::string& frames)
{
    return std::string("ID3") + version + std::string(2, '\0') + synchsafe(frames.size()) + frames;
}

std::string id3v1(std::string title, std::string artist)
{
    title.resize(30);
    artist.resize(30, ' ');
    return "TAG" + title + artist + std::string(30, '\0') + "1999" + std::string(28, '\0') + std::string("\0\7\x11", 3);
}

const std::string& bareMp3()
{
    static const std::string bytes = sound("bare.mp3", "-map_metadata -1 -id3v2_version 0 -write_xing 0");
    return bytes;
}

TEST(TagFacts, TakePeopleApartWhereTheFormatSaysSo)
{
    const auto artists = [](char version, const std::string& text) {
        return tagsOf(id3(version, frame("TPE1", 3, text)) + bareMp3(), "a.mp3")["System.Music.Artist"];
    };
    EXPECT_EQ(artists(4, std::string("Anna\0Ben", 8)), "Anna; Ben");
    EXPECT_EQ(artists(4, "Anna/Ben"), "Anna/Ben");
    EXPECT_EQ(artists(3, "Anna/Ben"), "Anna; Ben");
    EXPECT_EQ(artists(3, "AC/DC"), "AC/DC");
    EXPECT_EQ(tagsOf(id3(3, frame("TIT2", 3, "This/That")) + bareMp3(), "a.mp3")["System.Title"], "This/That");
    const std::string twice = sound("a.flac", "-metadata artist='Anna;Ben'");
    EXPECT_EQ(tagsOf(twice, "a.flac")["System.Music.Artist"], "Anna;Ben") << "a name that its owner chose";
}

TEST(TagFacts, ReadSeveralCommentsOfOneNameAsSeveralValues)
{
    std::string flac = sound("a.flac", "-metadata ARTIST=First -metadata ARTISX=Later");
    flac.replace(flac.find("ARTISX"), 6, "ARTIST");
    EXPECT_EQ(tagsOf(flac, "a.flac")["System.Music.Artist"], "First; Later");
}

TEST(TagFacts, TakeNarrowTextsForWhatTheyLookLike)
{
    const auto title = [](const std::string& bytes) {
        return tagsOf(id3(4, frame("TIT2", 0, bytes)) + bareMp3(), "a.mp3")["System.Title"];
    };
    EXPECT_EQ(title("K\xF6ln \x96 Bonn  "), "Köln – Bonn");
    EXPECT_EQ(title("K\xC3\xB6ln"), "Köln");
    const Facts old = tagsOf(bareMp3() + id3v1("K\xF6ln", "Jemand"), "a.mp3");
    EXPECT_THAT(old, IsSupersetOf(Facts{{"System.Title", "Köln"},
                                        {"System.Music.Artist", "Jemand"},
                                        {"System.Media.Year", "1999"},
                                        {"System.Music.TrackNumber", "7"},
                                        {"System.Music.Genre", "Rock"}}));
}

TEST(TagFacts, FillUpFromTheOlderTagOfTheSameFile)
{
    const Facts both = tagsOf(id3(4, frame("TIT2", 3, "A title longer than thirty characters")) + bareMp3() +
                                  id3v1("A title longer than thirty cha", "Jemand"),
                              "a.mp3");
    EXPECT_THAT(both, IsSupersetOf(Facts{{"System.Title", "A title longer than thirty characters"},
                                         {"System.Music.Artist", "Jemand"}}));
}

TEST(TagFacts, GiveNumbersAndOpinionsInTheirScales)
{
    const std::string frames =
        frame("TDRC", 3, "2004-05-01") + frame("TRCK", 3, "03/12") + frame("TPOS", 3, "1/2") + frame("TCMP", 3, "1") +
        frame("TBPM", 3, "120") + frame("TKEY", 3, "Am") + frame("TCON", 3, std::string("17\0Polka", 8)) +
        std::string("POPM\0\0\0\x04\0\0x\0\xC4\0", 14) + frame("USLT", 3, std::string("deu\0La la", 9));
    const Facts facts = tagsOf(id3(4, frames) + bareMp3(), "a.mp3");
    EXPECT_THAT(facts, IsSupersetOf(Facts{{"System.Media.Year", "2004"},
                                          {"System.Music.TrackNumber", "3"},
                                          {"System.Music.DiscNumber", "1"},
                                          {"System.Music.PartOfSet", "1/2"},
                                          {"System.Music.IsCompilation", "True"},
                                          {"System.Music.BeatsPerMinute", "120"},
                                          {"System.Music.InitialKey", "Am"},
                                          {"System.Music.Genre", "Rock; Polka"},
                                          {"System.Music.Lyrics", "La la"},
                                          {"System.Rating", "75"}}));
}

TEST(TagFacts, TakeNoPlayersNumbersForAComment)
{
    const auto comment = [](const std::string& name, const std::string& text) {
        return frame("COMM", 3, "eng" + name + std::string(1, '\0') + text);
    };
    const std::string numbers = comment("iTunNORM", " 00000A2B 00000A2B");
    EXPECT_EQ(tagsOf(id3(4, numbers) + bareMp3(), "a.mp3").count("System.Comment"), 0u);
    EXPECT_EQ(tagsOf(id3(4, numbers + comment("", "Live")) + bareMp3(), "a.mp3")["System.Comment"], "Live");
}

TEST(TagFacts, AreNoneWhereNothingIsWritten)
{
    EXPECT_THAT(tagsOf(bareMp3(), "a.mp3"), IsEmpty());
    EXPECT_THAT(tagsOf(id3(4, frame("TIT2", 3, " \0 ") + frame("TPE1", 0, "")) + bareMp3(), "a.mp3"), IsEmpty());
    EXPECT_THAT(tagsOf("", "a.mp3"), IsEmpty());
    EXPECT_THAT(tagsOf(std::string(3'000'000, '\0'), "a.mp3"), IsEmpty());
    EXPECT_THAT(tagsOf("a text, and nothing to hear", "a.flac"), IsEmpty());
}

// The file claims to go on for ever: only so much of it may be looked through.
class EndlessFile final : public RandomAccessFile {
public:
    std::uint64_t size() const override { return std::uint64_t{1} << 62; }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        std::fill(buffer.begin(), buffer.end(), std::byte{0});
        constexpr std::string_view mark = "ID3\4\0\0\0\0\0";
        for (std::size_t i = 0; position + i < mark.size() && i < buffer.size(); ++i)
            buffer[i] = static_cast<std::byte>(mark[static_cast<std::size_t>(position) + i]);
        read += buffer.size();
        return buffer.size();
    }
    std::uint64_t read = 0;
};

TEST(TagFacts, GiveUpOnAFileWithoutEnd)
{
    EndlessFile file;
    EXPECT_TRUE(makeTaglibFacts()->read(file, "a.mp3").empty());
    EXPECT_LE(file.read, 300u * 1'048'576);
}

TEST(TagFacts, SurviveDamageInEveryFormat)
{
    std::mt19937 random(7);
    for (const char* name : {"a.mp3", "a.m4a", "a.ogg", "a.flac", "a.wma", "a.wav", "a.aiff", "a.wv"}) {
        const std::string whole = sound(name, std::string(usualTags) + (name[2] == 'o' ? "-c:a libvorbis" : ""));
        for (int round = 0; round < 150; ++round) {
            std::string damaged = whole;
            for (int i = 0; i < 4; ++i)
                damaged[random() % std::min<std::size_t>(damaged.size(), 1'500)] = static_cast<char>(random());
            EXPECT_LT(tagsOf(damaged, name).size(), 40u);
            EXPECT_LT(tagsOf(whole.substr(0, random() % whole.size()), name).size(), 40u);
        }
    }
}

}  // namespace
}  // namespace kelvane
