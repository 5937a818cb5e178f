// The settings as the program works with them: plain values in their working units.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/file_size.h"
#include "base/file_time.h"
#include "engine/engine_options.h"
#include "engine/ignored_pairs.h"
#include "engine/scan_node.h"
#include "text/plugin_entry.h"

namespace kelvane {

// Where settings are kept between runs.
enum class PersistenceMode : std::uint32_t {
    bookkeepingOnly = 0,  // counters are kept, changes of options are not
    registry = 1,
    iniFile = 2,
};

// A colour as 0x00BBGGRR (the COLORREF of Windows).
struct TagColor {
    std::u16string name;
    std::uint32_t color = 0;
    friend bool operator==(const TagColor&, const TagColor&) = default;
};

// A named text: a column set, a folder set.
struct NamedText {
    std::u16string name;
    std::u16string text;
    friend bool operator==(const NamedText&, const NamedText&) = default;
};

// A saved scan or an entry of the history. `when` is unknown for saved scans.
struct KeptScan {
    CScanNode definition;  // its name is the entry's
    FileTime when;
    bool stale = false;  // a clean-up made its results out of date
};

// Recently opened files, the most recent one first.
struct RecentDocuments {
    std::size_t capacity = 5;
    std::vector<std::u16string> paths;
};

// Bits of binFlags that the settings themselves go by.
namespace settings_flag {
inline constexpr std::uint32_t beginner = 0x4;           // an interface with fixed scan settings
inline constexpr std::uint32_t advanced = 0x800;         // every option is offered
inline constexpr std::uint32_t darkTheme = 0x10000;      // for the whole process
inline constexpr std::uint32_t cleanupLog = 0x80000;     // clean-ups write a log
inline constexpr std::uint32_t safeOptions = 0x100000;   // those of the standard and the beginner's interface
inline constexpr std::uint32_t resetLayout = 0x400000;   // of the windows, at the next start
inline constexpr std::uint32_t doubleByte = 0x4000000;   // the system writes with double-byte characters
inline constexpr std::uint32_t textHelper = 0x10000000;  // extract texts in the background
inline constexpr std::uint32_t translated = 0x40000000;  // a translation is in force
inline constexpr std::uint32_t expert = 0x80000000;      // links are offered
}  // namespace settings_flag

namespace view_color {
inline constexpr std::uint32_t ofSystem = 0xFFFFFFFF;
inline constexpr std::uint32_t dark = 0x202020;  // forced by the dark theme
}  // namespace view_color

struct Settings {
    PersistenceMode persistence = PersistenceMode::registry;   // bPersistSettings
    bool useTranslation = true;                                // bUseTrans
    std::uint32_t iconSize = 24;                               // nIconSize, pixels
    std::uint32_t flags = 0;                                   // binFlags
    std::uint32_t moreOptions = 2;                             // binMoreOptions
    std::uint32_t tipOfTheDay = 1;                             // nTipOfTheDay
    std::uint32_t deduped = 0;                                 // nDeduped: files removed so far
    std::uint32_t noticesOff = 0;                              // bin1OffNotify
    std::uint32_t useCount = 0;                                // nUsecount
    std::uint32_t crashes = 0;                                 // nCrashes
    std::uint32_t savedVersion = 0;                            // binVer
    FileTime lastUpdateCheck;                                  // binUpdate
    std::uint32_t thumbnailSize = 120;                         // nThumbSize, pixels
    std::int32_t previewPercent = 75;                          // nMonitorPeekPC
    std::uint32_t previewTextWidth = 800;                      // nPeekTextWidth, pixels
    bool backgroundExtraction = true;                          // bSantasLittleHelper
    std::uint32_t largestExtraction = 6'291'456;               // nMaxStreamExtractSize, bytes; 0: none
    std::uint32_t textSample = 65'536;                         // nTextSample, characters
    FileSize hugeFile{10u * 1'048'576u};                       // nHugeFileMB
    FileSize tinyFile{50'000};                                 // nTinyFile
    std::int64_t dateTolerance = 1'000 * ticksPerMillisecond;  // msDateTolerance, 100-ns units
    bool descriptorCache = true;                               // bDescriptorCache
    FileSize descriptorCacheSize{1'024u * 1'048'576u};         // nDescriptorCacheMB
    bool pictureGate = true;                                   // bPictureGate
    std::uint32_t songStartMs = 14'900;                        // msSongStart
    std::uint32_t hoursPerPercent = 240;                       // nHours1PCdiff
    std::uint32_t lastScanFlags = scan_flag::standard;         // binLastScan
    std::uint32_t fileOperationFlags = 0;                      // binFileOpFlags
    std::uint32_t extractionTimeoutMs = 12'000;                // msBGTextTimeout; 0: none
    std::u16string textViewer;                                 // szTextViewerPath
    std::u16string comparisonTool;                             // found beside the program, not stored
    std::u16string folderMask = u"*";                          // szFileCountRule
    std::uint32_t charactersToFilter = 3;                      // nCharsAutoFilter
    std::uint32_t defaultCategory = 0;                         // nDefCategory
    std::vector<std::u16string> extraColumns;                  // msExtraColumns
    std::vector<std::u16string> pluginsOff;                    // msPluginsOff: names of libraries
    std::vector<std::u16string> extractionExcluded;            // szGrepExcludeTypes
    std::vector<std::u16string> extractionWhiteList;           // szGrepWhiteListTypes
    std::uint32_t viewBackground = view_color::ofSystem;       // rgbViewBgcol
    std::u16string pluginList;                                 // szPluginINI

    std::vector<FileCategory> fileTypes;             // "File types", "Folders" last
    std::vector<NamedText> columnSets;               // "Column sets"
    std::vector<NamedText> folderSets;               // "Folder sets"
    std::vector<KeptScan> savedScans;                // "SavedScans"
    std::vector<KeptScan> scanHistory;               // "ScanHistory", the latest first
    RecentDocuments recentDocuments;                 // "general\Recent Document List"
    std::vector<TagColor> tagColors;                 // "Tag colors"
    std::vector<std::uint32_t> excludedVolumes;      // "Excluded volumes": serial numbers, directly under the root
    std::vector<IgnoredGroup> ignoredGroups;         // "Ignored pairs": declared not to be duplicates
    std::vector<ContentPluginEntry> contentPlugins;  // "ContentPlugins", in the order in which they are loaded
    std::optional<CScanNode> lastScan;               // the whole definition, beside its option bits

    bool firstRun = false;           // "general" was not there
    bool resetWindowLayout = false;  // bit 22 of binFlags at load, kept apart until it is saved
};

}  // namespace kelvane
