#include "app/plugin_list.h"

#include "app/list_section.h"
#include "app/settings_lists.h"
#include "app/text_lists.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::u16string_view pathPart;  // "0": the number alone
constexpr std::u16string_view detectEnd = u"_detect";

std::u16string detectName(std::size_t number)
{
    return entryName(pathPart, number) + std::u16string(detectEnd);
}

}  // namespace

std::vector<ContentPluginEntry> readPluginList(const SettingsRoot& root, const std::filesystem::path& folder)
{
    const SettingsNode node(root, pluginSection, SettingsAccess::reading);
    std::vector<ContentPluginEntry> entries;
    for (const std::size_t number : entryNumbers(node, pathPart)) {
        std::u16string library, detect;
        if (node.readString(library, entryName(pathPart, number)) != SettingsCode::done || library.empty())
            continue;
        static_cast<void>(node.readString(detect, detectName(number)));  // missing: the plug-in's own counts
        if (entries.size() < mostPlugins)
            entries.push_back({(folder / pathOfText(library)).lexically_normal(), toUtf8(detect)});
    }
    return entries;
}

void readContentPlugins(const SettingsRoot& root, const SettingsContext& context, Settings& settings)
{
    settings.contentPlugins = readPluginList(root, context.places.programFolder());
}

SettingsCode writeContentPlugins(const SettingsRoot& root, const Settings& settings)
{
    ListWriter writer(root, pluginSection);
    for (std::size_t number = 0; number < settings.contentPlugins.size(); ++number) {
        const ContentPluginEntry& entry = settings.contentPlugins[number];
        writer.writeText(entryName(pathPart, number), textOfPath(entry.path));
        if (!entry.detect.empty())
            writer.writeText(detectName(number), toUtf16(entry.detect));
    }
    return writer.finish();
}

std::vector<std::u16string> showContentPlugins(const Settings& settings)
{
    std::vector<std::u16string> lines;
    for (const ContentPluginEntry& entry : settings.contentPlugins)
        lines.push_back(textOfPath(entry.path) + (entry.detect.empty() ? u"" : u" " + toUtf16(entry.detect)));
    return lines;
}

}  // namespace kelvane
