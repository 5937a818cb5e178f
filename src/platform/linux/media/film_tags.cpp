#include "platform/linux/media/film_tags.h"

extern "C" {
#include <libavutil/parseutils.h>
}

#include <array>
#include <charconv>

#include "base/utf.h"

namespace kelvane::linux_os {
namespace {

struct TextTag {
    const char* key;
    std::string_view property;
};

// FFmpeg's own names of what the formats name in their ways, and names that Matroska's tagging guidelines give
// (https://www.matroska.org/technical/tagging.html). Several keys of one property in order of preference.
constexpr std::array textTags = {
    TextTag{"title", "System.Title"},
    TextTag{"artist", "System.Music.Artist"},
    TextTag{"author", "System.Author"},
    TextTag{"album", "System.Music.AlbumTitle"},
    TextTag{"album_artist", "System.Music.AlbumArtist"},
    TextTag{"composer", "System.Music.Composer"},
    TextTag{"genre", "System.Music.Genre"},
    TextTag{"comment", "System.Comment"},
    TextTag{"description", "System.Comment"},
    TextTag{"synopsis", "System.Comment"},
    TextTag{"summary", "System.Comment"},
    TextTag{"copyright", "System.Copyright"},
    TextTag{"keywords", "System.Keywords"},
    TextTag{"language", "System.Language"},
    TextTag{"director", "System.Video.Director"},
    TextTag{"producer", "System.Media.Producer"},
    TextTag{"writer", "System.Media.Writer"},
    TextTag{"written_by", "System.Media.Writer"},
    TextTag{"screenplay_by", "System.Media.Writer"},
    TextTag{"publisher", "System.Media.Publisher"},
    TextTag{"distributed_by", "System.Media.ContentDistributor"},
    TextTag{"network", "System.Media.ContentDistributor"},
    TextTag{"subtitle", "System.Media.SubTitle"},
    TextTag{"show", "System.Media.SeriesName"},
    TextTag{"date_released", "System.Media.DateReleased"},
    TextTag{"encoded_by", "System.Media.EncodedBy"},
};

constexpr std::array numberTags = {
    TextTag{"date", "System.Media.Year"},
    TextTag{"year", "System.Media.Year"},
    TextTag{"date_released", "System.Media.Year"},
    TextTag{"season_number", "System.Media.SeasonNumber"},
    TextTag{"episode_sort", "System.Media.EpisodeNumber"},
    TextTag{"track", "System.Music.TrackNumber"},
    TextTag{"disc", "System.Music.DiscNumber"},
};

std::string_view valueOf(const AVFormatContext& format, const char* key)
{
    const AVDictionaryEntry* entry = av_dict_get(format.metadata, key, nullptr, 0);
    return entry == nullptr ? std::string_view() : std::string_view(entry->value);
}

// The number that the text begins with, as in "2004-05-01" and "3/12"; 0: there is none.
std::int64_t leadingNumber(std::string_view text)
{
    std::int64_t number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc() ? number : 0;
}

void addText(const TextTag& tag, std::string_view value, FactList& facts)
{
    const std::u16string text = toUtf16(value);
    // A comment may hold any punctuation, the names of people are separated by it.
    if (tag.property == "System.Title" || tag.property == "System.Comment")
        facts.text(tag.property, text);
    else
        facts.texts(tag.property, separatedFacts(text));
}

void addNumber(const TextTag& tag, std::string_view value, FactList& facts)
{
    const std::int64_t number = leadingNumber(value);
    const std::int64_t most = tag.property == "System.Media.Year" ? 9'999 : 100'000;
    if (number > 0 && number <= most)
        facts.number(tag.property, number);
}

void addCreation(std::string_view value, FactList& facts)
{
    std::int64_t microseconds = 0;
    const std::string text(value);
    if (!text.empty() && av_parse_time(&microseconds, text.c_str(), 0) >= 0 && microseconds > 0)
        facts.date("System.Media.DateEncoded",
                   fileTimeFromUnix(microseconds / 1'000'000, microseconds % 1'000'000 * 1'000));
}

}  // namespace

void addFilmTags(const AVFormatContext& format, FactList& facts)
{
    for (const TextTag& tag : textTags)
        if (const auto value = valueOf(format, tag.key); !value.empty())
            addText(tag, value, facts);
    for (const TextTag& tag : numberTags)
        addNumber(tag, valueOf(format, tag.key), facts);
    addCreation(valueOf(format, "creation_time"), facts);
}

}  // namespace kelvane::linux_os
