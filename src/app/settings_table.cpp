#include "app/settings_table.h"

#include <algorithm>

#include "app/settings_lists.h"
#include "app/text_lists.h"
#include "base/desktop_texts/options.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::u16string_view recentDocumentsKey = u"Recent Document List";
constexpr std::uint32_t usualDpi = 96;
constexpr std::uint32_t lastOldMajor = 5;  // Windows before NT 6.0

std::uint32_t translationInForce(const Settings& /*settings*/, const SettingsContext& context)
{
    return context.translation == TranslationState::active ? 1 : 0;
}

std::uint32_t runningVersion(const Settings& /*settings*/, const SettingsContext& context)
{
    return context.version;
}

std::uint32_t flagsWithReset(const Settings& settings, const SettingsContext& /*context*/)
{
    return settings.flags | (settings.resetWindowLayout ? settings_flag::resetLayout : 0);
}

std::uint32_t persistenceOfPlace(const SettingsContext& context)
{
    return static_cast<std::uint32_t>(context.inIniFile ? PersistenceMode::iniFile : PersistenceMode::registry);
}

std::uint32_t defaultFlags(const SettingsContext& context)
{
    const SystemVersion version = context.facts.version();
    const bool old = context.windowsRules && (!version.isNt || version.major <= lastOldMajor);
    return context.interfaceBits | (context.facts.usesDoubleByteCharacters() ? settings_flag::doubleByte : 0) |
           (old ? option_flag::thumbnailsWanted | option_flag::enumerateHidden : 0) |
           (context.translation == TranslationState::active ? settings_flag::translated : 0);
}

std::uint32_t scaled(std::uint32_t pixels, const SettingsContext& context, std::uint32_t least, std::uint32_t most)
{
    return std::clamp((pixels * context.facts.screenDpi() + usualDpi / 2) / usualDpi, least, most);
}

std::uint32_t thumbnailEdge(const SettingsContext& context)
{
    const auto ofFileManager = context.facts.thumbnailSize();
    return ofFileManager ? std::clamp(*ofFileManager, 32u, 800u) : scaled(120, context, 32, 800);
}

std::uint32_t textWidth(const SettingsContext& context)
{
    return scaled(800, context, 100, 4'000);
}

void readUpdateCheck(const std::vector<std::byte>& block, const SettingsContext& context, Settings& settings)
{
    settings.lastUpdateCheck = timeOfBlock(block).value_or(context.now);
}

std::vector<std::byte> writeUpdateCheck(const Settings& settings)
{
    return blockOfTime(settings.lastUpdateCheck);
}

std::u16string showUpdateCheck(const Settings& settings)
{
    return toUtf16(toIso8601(settings.lastUpdateCheck));
}

void readLastScan(const std::vector<std::byte>& block, const SettingsContext& /*context*/, Settings& settings)
{
    settings.lastScan = scanOfBlock(block);
}

std::vector<std::byte> writeLastScan(const Settings& settings)
{
    return settings.lastScan ? blockOfScan(*settings.lastScan) : std::vector<std::byte>{};
}

std::u16string showLastScan(const Settings& settings)
{
    return settings.lastScan ? toUtf16(settings.lastScan->roots) : std::u16string{};
}

namespace say = desktop_text;

// clang-format off
constexpr SettingRow table[] = {
    {u"bUseTrans", TextId::settingUseTranslation, OptionsPage::general, SavedWhen::withTranslations,
     NumberRule{.field = &Settings::useTranslation, .fallback = 1, .outgoing = translationInForce}, say::labelUseTranslation},
    {u"nUsecount", TextId::settingUseCount, OptionsPage::bookkeeping, SavedWhen::always,
     NumberRule{.field = &Settings::useCount}},
    {u"nDeduped", TextId::settingDeduped, OptionsPage::bookkeeping, SavedWhen::always,
     NumberRule{.field = &Settings::deduped}},
    {persistenceKey, TextId::settingPersistence, OptionsPage::general, SavedWhen::always,
     NumberRule{.field = &Settings::persistence, .clamp = Clamp::elseDefault, .most = 2, .computed = persistenceOfPlace}, say::labelPersistence},
    {u"binFlags", TextId::settingFlags, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::flags, .computed = defaultFlags, .outgoing = flagsWithReset}},
    {u"binMoreOptions", TextId::settingMoreOptions, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::moreOptions, .fallback = 2}},
    {u"bin1OffNotify", TextId::settingNoticesOff, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::noticesOff}},
    {u"nTipOfTheDay", TextId::settingTips, OptionsPage::general, SavedWhen::persistent,
     NumberRule{.field = &Settings::tipOfTheDay, .fallback = 1}},
    {u"nCrashes", TextId::settingCrashes, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::crashes}},
    {u"binVer", TextId::settingSavedVersion, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::savedVersion, .outgoing = runningVersion}},
    {u"binUpdate", TextId::settingUpdateCheck, OptionsPage::bookkeeping, SavedWhen::persistent,
     BlockRule{readUpdateCheck, writeUpdateCheck, showUpdateCheck}},
    {u"bSantasLittleHelper", TextId::settingTextHelper, OptionsPage::textExtraction, SavedWhen::persistent,
     NumberRule{.field = &Settings::backgroundExtraction, .fallback = 1}},
    {u"msBGTextTimeout", TextId::settingTextTimeout, OptionsPage::textExtraction, SavedWhen::persistent,
     NumberRule{.field = &Settings::extractionTimeoutMs, .fallback = 12'000, .clamp = Clamp::belowIsZero, .least = 1'000}, say::labelTextTimeout, say::unitMilliseconds},
    {u"nThumbSize", TextId::settingThumbnailSize, OptionsPage::view, SavedWhen::persistent,
     NumberRule{.field = &Settings::thumbnailSize, .clamp = Clamp::elseDefault, .least = 32, .most = 800, .computed = thumbnailEdge}, say::labelThumbnailSize, say::unitPixels},
    {u"nMonitorPeekPC", TextId::settingPreviewShare, OptionsPage::view, SavedWhen::persistent,
     NumberRule{.field = &Settings::previewPercent, .fallback = 75, .clamp = Clamp::elseDefault, .least = -100, .most = 100, .isSigned = true}, say::labelPreviewShare, say::unitPercent},
    {u"nPeekTextWidth", TextId::settingPreviewWidth, OptionsPage::view, SavedWhen::persistent,
     NumberRule{.field = &Settings::previewTextWidth, .clamp = Clamp::elseDefault, .least = 100, .most = 4'000, .computed = textWidth}, say::labelPreviewWidth, say::unitPixels},
    {u"nMaxStreamExtractSize", TextId::settingLargestStream, OptionsPage::textExtraction, SavedWhen::persistent,
     NumberRule{.field = &Settings::largestExtraction, .fallback = 6'291'456, .clamp = Clamp::belowIsZero, .least = 10'000}, say::labelLargestStream, say::unitBytes},
    {u"nTextSample", TextId::settingTextSample, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::textSample, .fallback = 65'536, .clamp = Clamp::elseDefault, .least = 48'000, .most = 131'072}, say::labelTextSample, say::unitCharacters},
    {u"bDescriptorCache", TextId::settingDescriptorCache, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::descriptorCache, .fallback = 1}, say::labelDescriptorCache},
    {u"nDescriptorCacheMB", TextId::settingDescriptorCacheSize, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::descriptorCacheSize, .fallback = 1'024, .clamp = Clamp::intoRange, .least = 8, .most = 65'536, .unit = 1'048'576}, say::labelDescriptorCacheSize, say::unitMegabytes},
    {u"bPictureGate", TextId::settingPictureGate, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::pictureGate, .fallback = 1}, say::labelPictureGate},
    {u"binFileOpFlags", TextId::settingFileOperationFlags, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::fileOperationFlags}},
    {u"nHugeFileMB", TextId::settingHugeFile, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::hugeFile, .fallback = 10, .clamp = Clamp::intoRange, .least = 1, .most = 50, .unit = 1'048'576}, say::labelHugeFile, say::unitMegabytes},
    {u"msDateTolerance", TextId::settingDateTolerance, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::dateTolerance, .fallback = 1'000, .unit = ticksPerMillisecond}, say::labelDateTolerance, say::unitMilliseconds},
    {u"msSongStart", TextId::settingSongStart, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::songStartMs, .fallback = 14'900, .clamp = Clamp::intoRange, .least = 5'000, .most = 60'000}, say::labelSongStart, say::unitMilliseconds},
    {u"nHours1PCdiff", TextId::settingHoursPerPercent, OptionsPage::comparing, SavedWhen::persistent,
     NumberRule{.field = &Settings::hoursPerPercent, .fallback = 240, .clamp = Clamp::elseDefault, .least = 1, .most = 10'000}, say::labelHoursPerPercent, say::unitHours},
    {u"nTinyFile", TextId::settingTinyFile, OptionsPage::scanning, SavedWhen::persistent,
     NumberRule{.field = &Settings::tinyFile, .fallback = 50'000, .clamp = Clamp::intoRange, .least = 2'048}, say::labelTinyFile, say::unitBytes},
    {u"binLastScan", TextId::settingLastScanFlags, OptionsPage::bookkeeping, SavedWhen::persistent,
     NumberRule{.field = &Settings::lastScanFlags, .fallback = scan_flag::standard}},
    {u"binLastScanNode", TextId::settingLastScan, OptionsPage::bookkeeping, SavedWhen::persistent,
     BlockRule{readLastScan, writeLastScan, showLastScan}},
    {u"szFileCountRule", TextId::settingFolderMask, OptionsPage::scanning, SavedWhen::persistent,
     TextRule{&Settings::folderMask, u"*", TextForm::neverEmpty}, say::labelFolderMask},
    {u"nCharsAutoFilter", TextId::settingFilterCharacters, OptionsPage::view, SavedWhen::persistent,
     NumberRule{.field = &Settings::charactersToFilter, .fallback = 3, .clamp = Clamp::intoRange, .most = 12}, say::labelFilterCharacters, say::unitCharacters},
    {u"nDefCategory", TextId::settingDefaultCategory, OptionsPage::scanning, SavedWhen::persistent,
     NumberRule{.field = &Settings::defaultCategory}, say::labelDefaultCategory},
    {u"File types", TextId::settingFileTypes, OptionsPage::scanning, SavedWhen::persistent,
     ListRule{readFileTypes, writeFileTypes, showFileTypes}, say::labelFileTypes},
    {u"Column sets", TextId::settingColumnSets, OptionsPage::view, SavedWhen::persistent,
     ListRule{readColumnSets, writeColumnSets, showColumnSets}, say::labelColumnSets},
    {u"Folder sets", TextId::settingFolderSets, OptionsPage::scanning, SavedWhen::persistent,
     ListRule{readFolderSets, writeFolderSets, showFolderSets}, say::labelFolderSets},
    {u"SavedScans", TextId::settingSavedScans, OptionsPage::bookkeeping, SavedWhen::persistent,
     ListRule{readSavedScans, writeSavedScans, showSavedScans}, say::labelSavedScans},
    {u"ScanHistory", TextId::settingScanHistory, OptionsPage::bookkeeping, SavedWhen::persistent,
     ListRule{readScanHistory, writeScanHistory, showScanHistory}, say::labelScanHistory},
    {recentDocumentsKey, TextId::settingRecentDocuments, OptionsPage::bookkeeping, SavedWhen::persistent,
     ListRule{readRecentDocuments, writeRecentDocuments, showRecentDocuments}, say::labelRecentDocuments},
    {u"szGrepExcludeTypes", TextId::settingTextExcluded, OptionsPage::textExtraction, SavedWhen::persistent,
     TextRule{&Settings::extractionExcluded, {}, TextForm::lowerCaseList}, say::labelTextExcluded},
    {u"szGrepWhiteListTypes", TextId::settingTextWhiteList, OptionsPage::textExtraction, SavedWhen::persistent,
     TextRule{&Settings::extractionWhiteList, u"pdf,docx,doc,xls,ppt,azw,xlsx,pptx", TextForm::lowerCaseList}, say::labelTextWhiteList},
    {u"msExtraColumns", TextId::settingExtraColumns, OptionsPage::view, SavedWhen::persistent,
     TextRule{&Settings::extraColumns, {}, TextForm::list}, say::labelExtraColumns},
    {u"msPluginsOff", say::meaningPluginsOff, OptionsPage::textExtraction, SavedWhen::persistent,
     TextRule{&Settings::pluginsOff, {}, TextForm::list}, say::labelPluginsOff},
    {u"rgbViewBgcol", TextId::settingViewBackground, OptionsPage::view, SavedWhen::persistent,
     NumberRule{.field = &Settings::viewBackground, .fallback = view_color::ofSystem}, say::labelViewBackground},
    {u"Excluded volumes", TextId::settingExcludedVolumes, OptionsPage::scanning, SavedWhen::persistent,
     ListRule{readExcludedVolumes, writeExcludedVolumes, showExcludedVolumes}, say::labelExcludedVolumes},
    {u"Ignored pairs", TextId::settingIgnoredPairs, OptionsPage::scanning, SavedWhen::persistent,
     ListRule{readIgnoredPairs, writeIgnoredPairs, showIgnoredPairs}, say::labelIgnoredPairs},
    {u"nIconSize", TextId::settingIconSize, OptionsPage::view, SavedWhen::never,
     NumberRule{.field = &Settings::iconSize, .fallback = 24}, say::labelIconSize, say::unitPixels},
    {u"szTextViewerPath", TextId::settingTextViewer, OptionsPage::general, SavedWhen::never,
     TextRule{&Settings::textViewer, {}, TextForm::programToStart}, say::labelTextViewer},
    {u"szPluginINI", TextId::settingPluginList, OptionsPage::textExtraction, SavedWhen::never,
     TextRule{&Settings::pluginList, {}, TextForm::besideProgram}, say::labelPluginList},
    {u"Tag colors", TextId::settingTagColors, OptionsPage::view, SavedWhen::never,
     ListRule{readTagColors, writeTagColors, showTagColors}, say::labelTagColors},
    {u"ContentPlugins", TextId::settingContentPlugins, OptionsPage::textExtraction, SavedWhen::never,
     ListRule{readContentPlugins, writeContentPlugins, showContentPlugins}, say::labelContentPlugins},
};
// clang-format on

}  // namespace

std::span<const SettingRow> settingsTable()
{
    return table;
}

const SettingRow* findSetting(std::u16string_view key)
{
    const auto row = std::find_if(std::begin(table), std::end(table),
                                  [&](const SettingRow& known) { return lowerKey(known.key) == lowerKey(key); });
    return row != std::end(table) ? row : nullptr;
}

std::u16string listSection(std::u16string_view key)
{
    return key == recentDocumentsKey ? joinSettingsPath(generalSection, key) : std::u16string(key);
}

}  // namespace kelvane
