// Lists of single values: recent documents, excluded volumes, tags with their colours.
#include <algorithm>
#include <charconv>
#include <cstdio>

#include "app/list_section.h"
#include "app/settings_lists.h"
#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::u16string_view recentSection = u"general\\Recent Document List";
constexpr std::u16string_view capacityName = u"DocumentCount";
constexpr std::u16string_view documentPart = u"Document";
constexpr std::uint32_t leastCapacity = 2;
constexpr std::uint32_t mostCapacity = 16;
constexpr std::u16string_view volumesSection = u"Excluded volumes";
constexpr std::u16string_view volumePart = u"Volume";
constexpr std::u16string_view tagsSection = u"Tag colors";

std::u16string hexadecimal(std::uint32_t number)
{
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08X", number);
    return toUtf16(digits);
}

std::optional<std::uint32_t> serialOf(std::u16string_view text)
{
    const std::string digits = toUtf8(text);
    std::uint32_t serial = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), serial, 16);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole ? std::optional(serial) : std::nullopt;
}

}  // namespace

void addRecentDocument(RecentDocuments& documents, const std::u16string& path)
{
    std::erase(documents.paths, path);
    documents.paths.insert(documents.paths.begin(), path);
    documents.paths.resize(std::min(documents.paths.size(), documents.capacity));
}

// Number 1 is the most recent one.
void readRecentDocuments(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    const SettingsNode node(root, recentSection, SettingsAccess::reading);
    RecentDocuments recent;
    std::uint32_t capacity = 0;
    if (node.readNumber(capacityName, capacity) == SettingsCode::done)
        recent.capacity = std::clamp(capacity, leastCapacity, mostCapacity);
    for (std::size_t number = recent.capacity; number >= 1; --number) {
        std::u16string path;
        if (node.readString(path, entryName(documentPart, number)) == SettingsCode::done && !path.empty())
            addRecentDocument(recent, path);
    }
    settings.recentDocuments = std::move(recent);
}

SettingsCode writeRecentDocuments(const SettingsRoot& root, const Settings& settings)
{
    const RecentDocuments& recent = settings.recentDocuments;
    ListWriter writer(root, recentSection);
    writer.writeNumber(capacityName, static_cast<std::uint32_t>(recent.capacity));
    for (std::size_t index = 0; index < std::min(recent.paths.size(), recent.capacity); ++index)
        writer.writeText(entryName(documentPart, index + 1), recent.paths[index]);
    return writer.finish();
}

std::vector<std::u16string> showRecentDocuments(const Settings& settings)
{
    return settings.recentDocuments.paths;
}

// Hexadecimal texts: an INI file cannot tell one of the numbers from a missing one.
void readExcludedVolumes(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    const SettingsNode node(root, volumesSection, SettingsAccess::reading);
    for (const std::size_t number : entryNumbers(node, volumePart)) {
        std::u16string text;
        static_cast<void>(node.readString(text, entryName(volumePart, number)));  // missing: no serial either
        if (const auto serial = serialOf(text))
            settings.excludedVolumes.push_back(*serial);
    }
}

// The section is there only as long as it has entries.
SettingsCode writeExcludedVolumes(const SettingsRoot& root, const Settings& settings)
{
    if (settings.excludedVolumes.empty())
        return root.store->deleteSection(joinSettingsPath(root.location.keyPath, volumesSection));
    ListWriter writer(root, volumesSection);
    for (std::size_t number = 0; number < settings.excludedVolumes.size(); ++number)
        writer.writeText(entryName(volumePart, number), hexadecimal(settings.excludedVolumes[number]));
    return writer.finish();
}

std::vector<std::u16string> showExcludedVolumes(const Settings& settings)
{
    std::vector<std::u16string> lines;
    for (const std::uint32_t serial : settings.excludedVolumes)
        lines.push_back(hexadecimal(serial));
    return lines;
}

void readTagColors(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    const SettingsNode node(root, tagsSection, SettingsAccess::reading);
    for (const std::u16string& name : node.valueNames()) {
        std::uint32_t color = 0;
        if (settings.tagColors.size() < mostTags && node.readNumber(name, color) == SettingsCode::done)
            settings.tagColors.push_back({name, color});
    }
    if (settings.tagColors.empty())
        settings.tagColors = {{std::u16string(text(TextId::tagRed)), 0x0000FF},
                              {std::u16string(text(TextId::tagGreen)), 0x00FF00},
                              {std::u16string(text(TextId::tagBlue)), 0xFF0000}};
}

SettingsCode writeTagColors(const SettingsRoot& root, const Settings& settings)
{
    ListWriter writer(root, tagsSection);
    for (std::size_t index = 0; index < std::min(settings.tagColors.size(), mostTags); ++index)
        writer.writeNumber(settings.tagColors[index].name, settings.tagColors[index].color);
    return writer.finish();
}

std::vector<std::u16string> showTagColors(const Settings& settings)
{
    std::vector<std::u16string> lines;
    for (const TagColor& tag : settings.tagColors)
        lines.push_back(tag.name + u": " + hexadecimal(tag.color));
    return lines;
}

}  // namespace kelvane
