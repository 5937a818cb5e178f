#include "ui/preview/file_facts.h"

#include <algorithm>

#include "media/media_kinds.h"
#include "text/file_kinds.h"
#include "ui/core/property_titles.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/preview/preview_content.h"

namespace kelvane {
namespace {

constexpr std::string_view always =
    "System.ItemNameDisplay,System.ItemFolderPathDisplay,System.Size,System.DateModified,System.DateCreated,"
    "System.ItemTypeText";

std::string_view usualFor(MediaKind kind)
{
    switch (kind) {
    case MediaKind::picture:
        return "System.Image.Dimensions,System.Photo.DateTaken,System.Photo.CameraModel,System.Keywords";
    case MediaKind::sound:
        return "System.Media.Duration,System.Audio.EncodingBitrate,System.Audio.SampleRate,System.Audio.ChannelCount,"
               "System.Title,System.Music.Artist,System.Music.AlbumTitle,System.Music.TrackNumber,System.Music.Genre,"
               "System.Media.Year";
    case MediaKind::film:
        return "System.Media.Duration,System.Video.FrameWidth,System.Video.FrameHeight,System.Video.FrameRate,"
               "System.Video.EncodingBitrate,System.Audio.EncodingBitrate,System.Title";
    case MediaKind::none:
        break;
    }
    return "System.Title,System.Author,System.Document.PageCount,System.Document.DateCreated";
}

void addOnce(std::vector<PropRef>& all, const std::vector<PropRef>& more)
{
    for (const PropRef& property : more) {
        if (std::find(all.begin(), all.end(), property) == all.end())
            all.push_back(property);
    }
}

}  // namespace

std::vector<Fact> readFacts(const Ref<const ShellItem>& file, const std::string& columns, PreviewTools& tools)
{
    const PropertyCatalogue& catalogue = tools.access.catalogue;
    std::vector<PropRef> wanted = catalogue.parseList(always);
    addOnce(wanted, catalogue.parseList(columns));
    if (!file->isFolder())
        addOnce(wanted, catalogue.parseList(usualFor(mediaKindOf(lastName(*file)))));
    ItemContext context(file);
    std::vector<Fact> facts;
    for (const PropRef& property : wanted) {
        if (tools.cancel.cancelled())
            break;
        std::u16string value = fromQt(shownCell(context, property, tools.access.source));
        if (value.size() > preview_limit::valueCharacters)
            value.replace(preview_limit::valueCharacters, std::u16string::npos, u" \u2026");
        if (!value.empty())
            facts.push_back({fromQt(propertyTitle(property)), std::move(value)});
    }
    return facts;
}

}  // namespace kelvane
