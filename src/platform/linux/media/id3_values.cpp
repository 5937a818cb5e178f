#include "platform/linux/media/id3_values.h"

#include <array>
#include <taglib/aifffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2header.h>
#include <taglib/mpegfile.h>
#include <taglib/popularimeterframe.h>
#include <taglib/trueaudiofile.h>
#include <taglib/wavfile.h>

#include "platform/star_rating.h"

namespace kelvane::linux_os {
namespace {

template <class Format>
TagLib::ID3v2::Tag* tagOf(TagLib::File& file)
{
    auto* format = dynamic_cast<Format*>(&file);
    return format != nullptr ? format->ID3v2Tag() : nullptr;
}

template <>
TagLib::ID3v2::Tag* tagOf<TagLib::RIFF::AIFF::File>(TagLib::File& file)
{
    auto* format = dynamic_cast<TagLib::RIFF::AIFF::File*>(&file);
    return format != nullptr ? format->tag() : nullptr;
}

// The one name with this sign in it that everybody knows; programs that take names apart make exceptions for it too.
bool isOneName(const TagLib::String& text)
{
    return text.upper() == "AC/DC";
}

TagLib::StringList people(const TagLib::StringList& list)
{
    TagLib::StringList separated;
    for (const TagLib::String& text : list)
        separated.append(isOneName(text) ? TagLib::StringList(text) : text.split("/"));
    return separated;
}

// As the players that write these frames map them to stars.
int starsOf(int popularity)
{
    return popularity == 0    ? 0
           : popularity < 32  ? 1
           : popularity < 96  ? 2
           : popularity < 160 ? 3
           : popularity < 224 ? 4
                              : 5;
}

}  // namespace

TagLib::ID3v2::Tag* id3v2TagOf(TagLib::File& file)
{
    for (const auto attempt :
         {&tagOf<TagLib::MPEG::File>, &tagOf<TagLib::RIFF::WAV::File>, &tagOf<TagLib::RIFF::AIFF::File>,
          &tagOf<TagLib::FLAC::File>, &tagOf<TagLib::TrueAudio::File>})
        if (auto* tag = attempt(file))
            return tag;
    return nullptr;
}

void separatePeople(const TagLib::ID3v2::Tag& tag, TagLib::PropertyMap& map)
{
    if (tag.header()->majorVersion() > 3 || tag.isEmpty())
        return;
    for (const char* key : {"ARTIST", "COMPOSER", "LYRICIST"})
        if (const auto found = map.find(key); found != map.end())
            found->second = people(found->second);
}

void addPopularity(const TagLib::ID3v2::Tag& tag, FactList& facts)
{
    for (const TagLib::ID3v2::Frame* frame : tag.frameList("POPM"))
        if (const auto* popularity = dynamic_cast<const TagLib::ID3v2::PopularimeterFrame*>(frame))
            addStars(starsOf(popularity->rating()), facts);
}

}  // namespace kelvane::linux_os
