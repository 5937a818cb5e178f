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

}  // namespace
}  // namespace kelvane
