#include "media/media_readers.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "text/file_kinds.h"

namespace kelvane {
namespace {

struct Carriers {
    bool sounds = false;
    bool films = false;
    bool pictures = false;
};

// What files of which kind carry, by the beginning of the property's name: nothing is opened for anything else.
struct CarriedFamily {
    std::string_view beginning;
    Carriers by;
};

constexpr Carriers streams{true, true, false};
constexpr Carriers onlyFilms{false, true, false};
constexpr Carriers onlyPictures{false, false, true};
constexpr Carriers all{true, true, true};

constexpr auto families = std::to_array<CarriedFamily>({
    {"System.Audio.", streams},
    {"System.DRM.", streams},
    {"System.GPS.", {false, true, true}},
    {"System.Image.", onlyPictures},
    {"System.Media.", all},
    {"System.Music.", streams},
    {"System.Photo.", {false, true, true}},
    {"System.Video.", onlyFilms},
});

constexpr auto general = std::to_array<std::string_view>({
    "System.ApplicationName",
    "System.Author",
    "System.Category",
    "System.Comment",
    "System.Copyright",
    "System.Keywords",
    "System.Language",
    "System.ParentalRating",
    "System.Rating",
    "System.SimpleRating",
    "System.Subject",
    "System.Title",
});

Carriers carriersOf(std::string_view property)
{
    if (std::find(general.begin(), general.end(), property) != general.end())
        return all;
    const auto family = std::find_if(families.begin(), families.end(), [property](const CarriedFamily& one) {
        return property.starts_with(one.beginning);
    });
    return family != families.end() ? family->by : Carriers{};
}

bool carries(MediaKind kind, const Carriers& by)
{
    switch (kind) {
    case MediaKind::sound:
        return by.sounds;
    case MediaKind::film:
        return by.films;
    case MediaKind::picture:
        return by.pictures;
    case MediaKind::none:
        break;
    }
    return false;
}

class MediaReaders final : public PropertyReaders {
public:
    MediaReaders(MediaDescriber& describer, PropertyReaders& next, const CancelFlag* cancel)
        : describer_(describer), next_(next), cancel_(cancel != nullptr ? *cancel : never_)
    {
    }

    RawValue read(const PropertyInfo& property, const ShellItem& item) override
    {
        if (mayCarry(property, item))
            if (RawValue value = fromFile(property.name, item); !value.empty())
                return value;
        return next_.read(property, item);
    }

private:
    [[nodiscard]] bool mayCarry(const PropertyInfo& property, const ShellItem& item) const
    {
        return item.info().kind == FileKind::regular &&
               carries(mediaKindOf(lastName(item)), carriersOf(property.name)) && !describer_.reading().hopeless(item);
    }
    RawValue fromFile(std::string_view name, const ShellItem& item) const
    {
        std::vector<NamedValue> facts = describer_.facts(item, cancel_);
        const auto found =
            std::find_if(facts.begin(), facts.end(), [name](const NamedValue& fact) { return fact.name == name; });
        return found != facts.end() ? std::move(found->value) : RawValue{};
    }

    MediaDescriber& describer_;
    PropertyReaders& next_;
    const CancelFlag never_;
    const CancelFlag& cancel_;
};

}  // namespace

std::unique_ptr<PropertyReaders> makeMediaReaders(MediaDescriber& describer, PropertyReaders& next,
                                                  const CancelFlag* cancel)
{
    return std::make_unique<MediaReaders>(describer, next, cancel);
}

}  // namespace kelvane
