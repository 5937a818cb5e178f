#include "platform/linux/media/asf_values.h"

#include <array>

#include "platform/linux/media/tag_values.h"
#include "platform/star_rating.h"

namespace kelvane::linux_os {
namespace {

struct TextAttribute {
    const char* name;
    std::string_view property;
};

constexpr std::array textAttributes = {
    TextAttribute{"WM/Director", "System.Video.Director"},
    TextAttribute{"WM/Producer", "System.Media.Producer"},
    TextAttribute{"WM/Writer", "System.Media.Writer"},
    TextAttribute{"WM/ContentDistributor", "System.Media.ContentDistributor"},
    TextAttribute{"WM/ParentalRating", "System.ParentalRating"},
    TextAttribute{"WM/Period", "System.Music.Period"},
    TextAttribute{"WM/AuthorURL", "System.Media.AuthorUrl"},
    TextAttribute{"WM/PromotionURL", "System.Media.PromotionUrl"},
    TextAttribute{"WM/UserWebURL", "System.Media.UserWebUrl"},
    TextAttribute{"WM/UniqueFileIdentifier", "System.Media.UniqueFileIdentifier"},
    TextAttribute{"WM/SubTitle", "System.Media.SubTitle"},
    TextAttribute{"WM/Category", "System.Category"},
    TextAttribute{"Title", "System.Title"},
    TextAttribute{"title", "System.Title"},
    TextAttribute{"Description", "System.Comment"},
    TextAttribute{"Copyright", "System.Copyright"},
};

// Asking the tag itself for an attribute that it has not gives it an empty one, over which the library falls later.
TagLib::ASF::AttributeList attributesOf(const TagLib::ASF::Tag& tag, const char* name)
{
    const TagLib::ASF::AttributeListMap& all = tag.attributeListMap();
    const auto found = all.find(name);
    return found != all.end() ? found->second : TagLib::ASF::AttributeList();
}

void appendTexts(const TagLib::ASF::Tag& tag, const char* name, std::vector<std::u16string>& texts)
{
    for (const TagLib::ASF::Attribute& attribute : attributesOf(tag, name))
        texts.push_back(taggedText(attribute.toString()));
}

// The first artist has a place of its own; the further ones are attributes.
void addArtists(const TagLib::ASF::Tag& tag, FactList& facts)
{
    std::vector<std::u16string> artists{taggedText(tag.artist())};
    appendTexts(tag, "Author", artists);
    facts.texts("System.Music.Artist", artists);
}

void addYear(const TagLib::ASF::Tag& tag, FactList& facts)
{
    for (const char* name : {"WM/Year", "date"})
        for (const TagLib::ASF::Attribute& attribute : attributesOf(tag, name))
            if (const int year = attribute.toString().toInt(); year > 0 && year <= 9999)
                facts.number("System.Media.Year", year);
}

}  // namespace

void addAsfAttributes(const TagLib::ASF::Tag& tag, FactList& facts)
{
    addArtists(tag, facts);
    for (const TagLib::ASF::Attribute& attribute : attributesOf(tag, "WM/SharedUserRating"))
        addRating(attribute.toUInt(), facts);
    addYear(tag, facts);
    for (const TextAttribute& attribute : textAttributes) {
        std::vector<std::u16string> texts;
        appendTexts(tag, attribute.name, texts);
        facts.texts(attribute.property, texts);
    }
}

}  // namespace kelvane::linux_os
