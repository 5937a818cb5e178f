#include "ui/core/property_titles.h"

#include <array>
#include <unordered_map>

#include "base/desktop_texts/file_properties.h"
#include "base/desktop_texts/media_properties.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

constexpr TextId textsOfProperties[] = {
#define TEXT_ROW(number, name, english) desktop_text::name,
#include "base/desktop_texts/file_properties.inc"
#include "base/desktop_texts/media_properties.inc"
#undef TEXT_ROW
};

// Fields of plug-ins have names that nobody could translate.
QString translated(std::u16string_view english)
{
    static const auto ids = [] {
        std::unordered_map<std::u16string_view, TextId> all;
        for (const TextId id : textsOfProperties)
            all.emplace(englishText(id), id);
        return all;
    }();
    const auto found = ids.find(english);
    return found != ids.end() ? shown(found->second) : toQt(english);
}

// These would otherwise be called as another one is.
constexpr std::array<std::pair<std::string_view, TextId>, 2> ownTitles = {{
    {"System.FileAttributes", desktop_text::propertyAttributesAsANumber},
    {"Stock.Kind", desktop_text::propertyTypeByFileMasks},
}};

constexpr std::array<std::pair<std::string_view, TextId>, 9> subjects = {{
    {"System.Document.", TextId::categoryDocuments},
    {"System.Music.", TextId::categoryMusic},
    {"System.Audio.", TextId::categoryMusic},
    {"System.Video.", TextId::categoryMovies},
    {"System.RecordedTV.", TextId::categoryMovies},
    {"System.Media.", TextId::categoryMovies},
    {"System.Image.", TextId::categoryPhotos},
    {"System.Photo.", TextId::categoryPhotos},
    {"System.GPS.", TextId::categoryPhotos},
}};

}  // namespace

bool isForPeople(const PropRef& property)
{
    return property.kind() != PropKind::none && property.info->type != VarType::object;
}

QString propertyTitle(const PropRef& property)
{
    if (!property)
        return {};
    for (const auto& [name, title] : ownTitles)
        if (property.info->name == name)
            return shown(title);
    return property.info->displayName.empty() ? toQt(property.info->name) : translated(property.info->displayName);
}

QString propertyDescription(const PropRef& property)
{
    if (!property)
        return {};
    if (!property.info->description.empty())
        return translated(property.info->description);
    for (const auto& [beginning, subject] : subjects)
        if (property.info->name.starts_with(beginning))
            return shown(subject);
    return {};
}

}  // namespace kelvane
