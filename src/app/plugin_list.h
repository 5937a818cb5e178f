// The list of content plug-ins: a section of the settings, or a file that the settings name.
#pragma once

#include <filesystem>
#include <vector>

#include "app/settings_node.h"
#include "text/plugin_entry.h"

namespace kelvane {

inline constexpr std::u16string_view pluginSection = u"ContentPlugins";
inline constexpr std::size_t mostPlugins = 100;

// By rising numbers; gaps are no fault. A path that is not full is meant below `folder`.
[[nodiscard]] std::vector<ContentPluginEntry> readPluginList(const SettingsRoot& root,
                                                             const std::filesystem::path& folder);

}  // namespace kelvane
