#include "platform/linux/media/tag_values.h"

#include <array>
#include <charconv>
#include <optional>

#include "base/utf.h"

namespace kelvane::linux_os {
namespace {

struct TextTag {
    const char* key;
    std::string_view property;
};

// Several keys of one property in order of preference.
constexpr std::array textTags = {
    TextTag{"TITLE", "System.Title"},
    TextTag{"ALBUM", "System.Music.AlbumTitle"},
    TextTag{"ARTIST", "System.Music.Artist"},
    TextTag{"ARTISTS", "System.Music.Artist"},
    TextTag{"ALBUMARTIST", "System.Music.AlbumArtist"},
    TextTag{"ALBUM ARTIST", "System.Music.AlbumArtist"},
    TextTag{"ALBUM_ARTIST", "System.Music.AlbumArtist"},
    TextTag{"GENRE", "System.Music.Genre"},
    TextTag{"COMPOSER", "System.Music.Composer"},
    TextTag{"CONDUCTOR", "System.Music.Conductor"},
    TextTag{"COMMENT", "System.Comment"},
    TextTag{"DESCRIPTION", "System.Comment"},
    TextTag{"BPM", "System.Music.BeatsPerMinute"},
    TextTag{"LYRICS", "System.Music.Lyrics"},
    TextTag{"UNSYNCEDLYRICS", "System.Music.Lyrics"},
    TextTag{"MOOD", "System.Music.Mood"},
    TextTag{"INITIALKEY", "System.Music.InitialKey"},
    TextTag{"CONTENTGROUP", "System.Music.ContentGroupDescription"},
    TextTag{"GROUPING", "System.Music.ContentGroupDescription"},
    TextTag{"WORK", "System.Music.ContentGroupDescription"},
    TextTag{"SUBTITLE", "System.Media.SubTitle"},
    TextTag{"COPYRIGHT", "System.Copyright"},
    TextTag{"LABEL", "System.Media.Publisher"},
    TextTag{"PUBLISHER", "System.Media.Publisher"},
    TextTag{"ORGANIZATION", "System.Media.Publisher"},
    TextTag{"ENCODEDBY", "System.Media.EncodedBy"},
    TextTag{"ENCODER", "System.Media.EncodedBy"},
    TextTag{"ENCODING", "System.Media.EncodingSettings"},
    TextTag{"LYRICIST", "System.Media.Writer"},
    TextTag{"PRODUCER", "System.Media.Producer"},
    TextTag{"DIRECTOR", "System.Video.Director"},
    TextTag{"ARTISTWEBPAGE", "System.Media.AuthorUrl"},
    TextTag{"RELEASEDATE", "System.Media.DateReleased"},
    TextTag{"LANGUAGE", "System.Language"},
    TextTag{"DISCNUMBER", "System.Music.PartOfSet"},
};

struct NumberTag {
    const char* key;
    std::string_view property;
};

constexpr std::array numberTags = {
    NumberTag{"TRACKNUMBER", "System.Music.TrackNumber"},
    NumberTag{"DISCNUMBER", "System.Music.DiscNumber"},
    NumberTag{"DATE", "System.Media.Year"},
    NumberTag{"YEAR", "System.Media.Year"},
    NumberTag{"ORIGINALDATE", "System.Media.Year"},
};

std::vector<std::u16string> textsOf(const TagLib::StringList& list)
{
    std::vector<std::u16string> texts;
    for (const TagLib::String& text : list)
        texts.push_back(taggedText(text));
    return texts;
}

// The number that the text begins with: "3/12" is the third of twelve, "2004-05-01" a day of 2004.
std::optional<std::int64_t> leadingNumber(const TagLib::StringList& list)
{
    const std::string text = toUtf8(trimmedFact(taggedText(list.front())));
    std::int64_t number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    return end.ec == std::errc() && number > 0 ? std::optional(number) : std::nullopt;
}

void addNumber(const TagLib::PropertyMap& map, const NumberTag& tag, FactList& facts)
{
    const auto found = map.find(tag.key);
    if (found == map.end() || found->second.isEmpty())
        return;
    const auto number = leadingNumber(found->second);
    const bool year = tag.property == "System.Media.Year";
    if (number && (!year || *number <= 9999))
        facts.number(tag.property, *number);
}

void addCompilation(const TagLib::PropertyMap& map, FactList& facts)
{
    const auto found = map.find("COMPILATION");
    if (found != map.end() && !found->second.isEmpty())
        facts.number("System.Music.IsCompilation", leadingNumber(found->second) == 1);
}

}  // namespace

std::u16string taggedText(const TagLib::String& text)
{
    return toUtf16(text.to8Bit(true));
}

void addMappedTags(const TagLib::PropertyMap& map, FactList& facts)
{
    for (const TextTag& tag : textTags)
        if (const auto found = map.find(tag.key); found != map.end())
            facts.texts(tag.property, textsOf(found->second));
    for (const NumberTag& tag : numberTags)
        addNumber(map, tag, facts);
    addCompilation(map, facts);
}

}  // namespace kelvane::linux_os
