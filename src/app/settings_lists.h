// The lists among the settings. Each has a section of its own directly under the root, but for the recent documents,
// which are in a subsection of "general". docs/formats/settings.md says what stands in them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/settings_context.h"
#include "app/settings_node.h"

namespace kelvane {

inline constexpr std::size_t mostSets = 50;  // of columns, and of folders
inline constexpr std::size_t mostHistory = 50;
inline constexpr std::size_t mostTags = 30;

// Each list three times: as the loader reads it, as the saver writes it, and a line an entry for people to see. Only
// the table of settings names them.
using ReadList = void(const SettingsRoot& root, const SettingsContext& context, Settings& settings);
using WriteList = SettingsCode(const SettingsRoot& root, const Settings& settings);
using ShowList = std::vector<std::u16string>(const Settings& settings);

ReadList readFileTypes, readColumnSets, readFolderSets, readSavedScans, readScanHistory, readRecentDocuments,
    readExcludedVolumes, readIgnoredPairs, readTagColors, readContentPlugins;
WriteList writeFileTypes, writeColumnSets, writeFolderSets, writeSavedScans, writeScanHistory, writeRecentDocuments,
    writeExcludedVolumes, writeIgnoredPairs, writeTagColors, writeContentPlugins;
ShowList showFileTypes, showColumnSets, showFolderSets, showSavedScans, showScanHistory, showRecentDocuments,
    showExcludedVolumes, showIgnoredPairs, showTagColors, showContentPlugins;

// Puts a document in front; the same one further down goes, and so does what is over the capacity.
void addRecentDocument(RecentDocuments& documents, const std::u16string& path);

// A time as the eight bytes of a FILETIME, least significant first; nothing for any other number of bytes.
[[nodiscard]] std::optional<FileTime> timeOfBlock(const std::vector<std::byte>& block);
[[nodiscard]] std::vector<std::byte> blockOfTime(FileTime time);

// A scan definition as a serialised node; nothing for a block that is damaged.
[[nodiscard]] std::optional<CScanNode> scanOfBlock(const std::vector<std::byte>& block);
[[nodiscard]] std::vector<std::byte> blockOfScan(const CScanNode& scan);

}  // namespace kelvane
