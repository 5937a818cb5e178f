#include <algorithm>

#include "platform/linux/media/adapters.h"
#include "platform/linux/media/asf_values.h"
#include "platform/linux/media/id3_values.h"
#include "platform/linux/media/tag_values.h"
#include "platform/linux/media/tagged_file.h"
#include "platform/property_table.h"

namespace kelvane {
namespace linux_os {
namespace {

// What a file says in its other tags: MP3 files have up to three kinds of them.
void addPlainTags(const TagLib::Tag& tag, FactList& facts)
{
    facts.text("System.Title", taggedText(tag.title()));
    facts.text("System.Music.AlbumTitle", taggedText(tag.album()));
    facts.text("System.Music.Artist", taggedText(tag.artist()));
    facts.text("System.Music.Genre", taggedText(tag.genre()));
    if (tag.year() > 0 && tag.year() <= 9999)
        facts.number("System.Media.Year", tag.year());
    if (tag.track() > 0)
        facts.number("System.Music.TrackNumber", tag.track());
}

// Players keep loudness and gaps in comments with a name; the plain comment would be one of those for want of another.
bool hasNamedComment(const TagLib::PropertyMap& map)
{
    return std::any_of(map.begin(), map.end(), [](const auto& entry) { return entry.first.startsWith("COMMENT:"); });
}

void addTags(TagLib::File& file, FactList& facts)
{
    TagLib::PropertyMap map = file.properties();
    if (const auto* id3 = id3v2TagOf(file)) {
        separatePeople(*id3, map);
        addPopularity(*id3, facts);
    }
    if (const auto* asf = dynamic_cast<const TagLib::ASF::File*>(&file); asf != nullptr && asf->tag() != nullptr)
        addAsfAttributes(*asf->tag(), facts);
    addMappedTags(map, facts);
    const TagLib::Tag* tag = file.tag();
    if (tag == nullptr)
        return;
    addPlainTags(*tag, facts);
    if (!hasNamedComment(map))
        facts.text("System.Comment", taggedText(tag->comment()));
}

class TaglibFacts final : public FactReading {
public:
    TaglibFacts() { readNarrowTextsLeniently(); }

    std::vector<NamedValue> read(RandomAccessFile& file, std::string_view fileName) override
    {
        TaglibStream stream(file);
        FactList facts(*properties_);
        if (const auto tagged = openTagged(stream, fileName))
            addTags(*tagged, facts);
        return facts.take();
    }

private:
    std::unique_ptr<PropertySystem> properties_ = makePropertyTable();
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<FactReading> makeTaglibFacts()
{
    return std::make_unique<linux_os::TaglibFacts>();
}

}  // namespace kelvane
