#include "props/substitutes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kelvane {
namespace {

struct Rule {
    std::string_view property;
    std::string_view sources;
};

constexpr std::array rules = {
    Rule{"System.ItemAuthors", "System.Author,System.Music.Artist,System.Music.AlbumArtist"},
    Rule{"System.ItemDate", "System.Photo.DateTaken,System.DateModified"},
    Rule{"System.Music.DisplayArtist", "System.Music.AlbumArtist,System.Music.Artist"},
    Rule{"System.GPS.LatitudeDecimal", "System.GPS.Latitude"},
    Rule{"System.GPS.LongitudeDecimal", "System.GPS.Longitude"},
};

}  // namespace

Substitutes::Substitutes(const PropertyCatalogue& catalogue)
{
    for (const Rule& rule : rules)
        if (const PropRef property = catalogue.byName(rule.property))
            lists_.emplace_back(property.identifier, catalogue.parseList(rule.sources));
}

std::span<const PropRef> Substitutes::of(const PropRef& property) const
{
    const auto found = std::find_if(lists_.begin(), lists_.end(),
                                    [&property](const auto& list) { return list.first == property.identifier; });
    return found != lists_.end() ? std::span<const PropRef>(found->second) : std::span<const PropRef>();
}

}  // namespace kelvane
