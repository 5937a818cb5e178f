#include "cli/described_content.h"

#include <array>
#include <sstream>

#include "base/filled_text.h"
#include "engine/document_description.h"
#include "engine/media_causes.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

// Parted by spaces.
std::string rowOf(const auto& numbers)
{
    std::ostringstream row;
    for (const auto number : numbers)
        row << (row.tellp() == std::streampos(0) ? "" : "  ") << number;
    return row.str();
}

std::pair<std::string, std::string> line(TextId title, std::string value)
{
    return {filledText(title), std::move(value)};
}

DescribedContent describeText(const ShellItem& item, const PropertyAccess& properties, Platform& platform,
                              const CancelFlag& cancel)
{
    const DocumentDescriber describer(platform.shell(), *properties.extraction, nullptr);
    const DocumentDescription made = describer.describe(item, false, cancel);
    if (!made.descriptor)
        return {nullptr, {}, made.cause()};
    const SimDocDescriptor& text = *made.descriptor;
    return {{{"length", text.length()}, {"size", text.size()}, {"statistics", text.statistics()}},
            {line(TextId::titleLength, std::to_string(text.length())),
             line(TextId::titleSize, std::to_string(text.size())),
             line(TextId::titleStatistics, rowOf(text.statistics()))},
            {}};
}

DescribedContent describeAudio(const ShellItem& item, const MediaDescriber& describer, const CancelFlag& cancel)
{
    const SoundDescription made = describer.sound(item, cancel);
    if (!made.fingerprint)
        return {nullptr, {}, mediaCause(made.fault)};
    const MP3Finger& song = *made.fingerprint;
    return {
        {{"frames", song.frames()}, {"centroid", song.centroid()}, {"spread", song.spread()}, {"norm", song.norm()}},
        {line(TextId::titleFrames, std::to_string(song.frames())), line(TextId::titleCentroid, rowOf(song.centroid())),
         line(TextId::titleSpread, rowOf(song.spread())), line(TextId::titleNorm, rowOf(std::array{song.norm()}))},
        {}};
}

MediaKind kindByName(const ShellItem& item)
{
    return mediaKindOf(bytesFromNative(item.name()));
}

DescribedContent describeImage(const ShellItem& item, const MediaDescriber& describer, const CancelFlag& cancel)
{
    const MediaKind kind = kindByName(item) == MediaKind::film ? MediaKind::film : MediaKind::picture;
    const PreviewDescription made = describer.signature(item, kind, cancel);
    if (!made.signature)
        return {nullptr, {}, mediaCause(made.fault)};
    return {{{"width", made.signature->width}, {"height", made.signature->height}},
            {line(TextId::titlePreviewWidth, std::to_string(made.signature->width)),
             line(TextId::titlePreviewHeight, std::to_string(made.signature->height))},
            {}};
}

}  // namespace

std::string_view descriptorWord(DescriptorKind kind)
{
    switch (kind) {
    case DescriptorKind::text:
        return "text";
    case DescriptorKind::audio:
        return "audio";
    case DescriptorKind::image:
        break;
    }
    return "image";
}

DescribedContent describeContent(DescriptorKind kind, const ShellItem& item, const PropertyAccess& properties,
                                 Platform& platform, const CancelFlag& cancel)
{
    switch (kind) {
    case DescriptorKind::text:
        return describeText(item, properties, platform, cancel);
    case DescriptorKind::audio:
        return describeAudio(item, *properties.describer, cancel);
    case DescriptorKind::image:
        break;
    }
    return describeImage(item, *properties.describer, cancel);
}

std::optional<DescriptorKind> usualDescriptor(const ShellItem& item, const PropertyAccess& properties)
{
    if (item.info().kind != FileKind::regular)
        return std::nullopt;
    switch (kindByName(item)) {
    case MediaKind::sound:
        return DescriptorKind::audio;
    case MediaKind::film:
    case MediaKind::picture:
        return DescriptorKind::image;
    case MediaKind::none:
        break;
    }
    return properties.extraction->hopeless(item) ? std::nullopt : std::optional(DescriptorKind::text);
}

}  // namespace kelvane
