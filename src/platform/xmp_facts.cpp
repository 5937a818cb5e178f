#include "platform/xmp_facts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>

#include "base/utf.h"
#include "platform/camera_time.h"
#include "platform/star_rating.h"

namespace kelvane {
namespace {

struct TextProperty {
    std::string_view name;
    std::string_view property;
};

// Several of one property in order of preference.
constexpr std::array texts = {
    TextProperty{"dc:title", "System.Title"},
    TextProperty{"dc:description", "System.Comment"},
    TextProperty{"dc:subject", "System.Keywords"},
    TextProperty{"dc:creator", "System.Author"},
    TextProperty{"dc:rights", "System.Copyright"},
    TextProperty{"photoshop:Headline", "System.Subject"},
    TextProperty{"MPReg:PersonDisplayName", "System.Photo.PeopleNames"},
    TextProperty{"Iptc4xmpExt:PersonInImage", "System.Photo.PeopleNames"},
    TextProperty{"Iptc4xmpExt:Event", "System.Photo.Event"},
    TextProperty{"xmp:CreatorTool", "System.SoftwareUsed"},
    TextProperty{"tiff:Make", "System.Photo.CameraManufacturer"},
    TextProperty{"tiff:Model", "System.Photo.CameraModel"},
    TextProperty{"aux:Lens", "System.Photo.LensModel"},
    TextProperty{"exifEX:LensModel", "System.Photo.LensModel"},
    TextProperty{"aux:SerialNumber", "System.Photo.CameraSerialNumber"},
};

constexpr std::array others = {std::string_view("xmp:Rating"), std::string_view("MicrosoftPhoto:Rating"),
                               std::string_view("exif:DateTimeOriginal"), std::string_view("photoshop:DateCreated"),
                               std::string_view("xmp:CreateDate")};

constexpr std::size_t mostValues = 1'000;

bool isWanted(std::string_view name)
{
    const auto isText = [name](const TextProperty& property) { return property.name == name; };
    return std::any_of(texts.begin(), texts.end(), isText) ||
           std::find(others.begin(), others.end(), name) != others.end();
}

// A property is an attribute, or an element that holds its text, or one that holds a list of texts. Where there is one
// text in several languages, the first is that of the default.
class Collector final : public XmlHandler {
public:
    using Values = std::map<std::string, std::vector<std::u16string>, std::less<>>;

    bool elementBegins(std::string_view name, std::span<const Attribute> attributes) override
    {
        if (name == "rdf:li" && !property_.empty() && !(alternatives_ && items_ > 0))
            beginText();
        else if (name == "rdf:Alt")
            alternatives_ = true;
        else if (isWanted(name) && property_.empty())
            beginProperty(name);
        for (const auto& [key, value] : attributes)
            if (isWanted(key))
                keep(key, toUtf16(value));
        return true;
    }
    bool elementEnds(std::string_view name) override
    {
        if (name == property_)
            endProperty();
        else if (name == "rdf:li")
            endText();
        return true;
    }
    bool characters(std::string_view text) override
    {
        if (open_)
            text_ += text;
        return true;
    }

    Values take() { return std::move(values_); }

private:
    void beginProperty(std::string_view name)
    {
        property_ = name;
        alternatives_ = false;
        items_ = 0;
        open_ = true;
        text_.clear();
    }
    void endProperty()
    {
        endText();
        property_.clear();
    }
    void beginText()
    {
        ++items_;
        open_ = true;
        text_.clear();
    }
    void endText()
    {
        if (open_)
            keep(property_, toUtf16(text_));
        open_ = false;
    }
    void keep(std::string_view name, std::u16string text)
    {
        // Some programs write the word for "any language" where they have no text.
        if (trimmedFact(text).empty() || text == u"x-default")
            return;
        auto& list = values_[std::string(name)];
        if (list.size() < mostValues)
            list.push_back(std::move(text));
    }

    Values values_;
    std::string property_;  // the one that is being read; empty between them
    std::string text_;
    bool open_ = false;  // whether characters belong to text_
    bool alternatives_ = false;
    std::size_t items_ = 0;
};

std::optional<std::string> firstOf(const Collector::Values& values, std::string_view name)
{
    const auto found = values.find(name);
    return found != values.end() ? std::optional(toUtf8(trimmedFact(found->second.front()))) : std::nullopt;
}

std::int64_t wholeOf(const Collector::Values& values, std::string_view name)
{
    const std::string text = firstOf(values, name).value_or("");
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void addDateTaken(const Collector::Values& values, FactList& facts)
{
    for (const char* name : {"exif:DateTimeOriginal", "photoshop:DateCreated", "xmp:CreateDate"})
        if (const auto time = cameraTime(firstOf(values, name).value_or("")))
            facts.date("System.Photo.DateTaken", *time);
}

}  // namespace

void addXmpFacts(std::span<const std::byte> packet, XmlParsing& xml, FactList& facts)
{
    Collector collector;
    (void)xml.parse(packet, collector);
    const auto values = collector.take();
    for (const TextProperty& property : texts)
        if (const auto found = values.find(property.name); found != values.end())
            facts.texts(property.property, found->second);
    addRating(wholeOf(values, "MicrosoftPhoto:Rating"), facts);
    addStars(wholeOf(values, "xmp:Rating"), facts);
    addDateTaken(values, facts);
}

}  // namespace kelvane
