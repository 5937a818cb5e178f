// The scans that are kept: those saved by name, and the history.
#include <algorithm>

#include "app/list_section.h"
#include "app/settings_lists.h"
#include "base/utf.h"
#include "engine/node_blob.h"

namespace kelvane {
namespace {

constexpr std::u16string_view scanPart = u"Scan";
constexpr std::u16string_view whenPart = u"When";
constexpr std::u16string_view stalePart = u"Stale";

KeptScan readScan(const SettingsNode& node, std::size_t number, CScanNode definition)
{
    std::vector<std::byte> when;
    std::uint32_t stale = 0;
    static_cast<void>(node.readBinary(when, entryName(whenPart, number)));  // missing: unknown
    static_cast<void>(node.readNumber(entryName(stalePart, number), stale));
    return {std::move(definition), timeOfBlock(when).value_or(FileTime{}), stale != 0};
}

// A damaged entry is passed over: it takes none of the others with it.
std::vector<KeptScan> readScans(const SettingsRoot& root, std::u16string_view section, std::size_t most)
{
    const SettingsNode node(root, section, SettingsAccess::reading);
    std::vector<KeptScan> scans;
    for (const std::size_t number : entryNumbers(node, scanPart)) {
        std::vector<std::byte> block;
        if (scans.size() == most || node.readBinary(block, entryName(scanPart, number)) != SettingsCode::done)
            continue;
        if (auto definition = scanOfBlock(block))
            scans.push_back(readScan(node, number, std::move(*definition)));
    }
    return scans;
}

SettingsCode writeScans(const SettingsRoot& root, std::u16string_view section, const std::vector<KeptScan>& scans,
                        std::size_t most)
{
    ListWriter writer(root, section);
    for (std::size_t number = 0; number < std::min(scans.size(), most); ++number) {
        const KeptScan& scan = scans[number];
        const std::vector<std::byte> block = blockOfScan(scan.definition);
        if (block.empty())  // too long for any place
            continue;
        writer.writeBlock(entryName(scanPart, number), block);
        if (scan.when != FileTime{})
            writer.writeBlock(entryName(whenPart, number), blockOfTime(scan.when));
        if (scan.stale)
            writer.writeNumber(entryName(stalePart, number), 1);
    }
    return writer.finish();
}

std::vector<std::u16string> shown(const std::vector<KeptScan>& scans)
{
    std::vector<std::u16string> lines;
    for (const KeptScan& scan : scans)
        lines.push_back(scan.definition.name() + u": " + toUtf16(scan.definition.roots));
    return lines;
}

}  // namespace

void readSavedScans(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    settings.savedScans = readScans(root, u"SavedScans", SIZE_MAX);
}

SettingsCode writeSavedScans(const SettingsRoot& root, const Settings& settings)
{
    return writeScans(root, u"SavedScans", settings.savedScans, SIZE_MAX);
}

std::vector<std::u16string> showSavedScans(const Settings& settings)
{
    return shown(settings.savedScans);
}

void readScanHistory(const SettingsRoot& root, const SettingsContext& /*context*/, Settings& settings)
{
    settings.scanHistory = readScans(root, u"ScanHistory", mostHistory);
}

SettingsCode writeScanHistory(const SettingsRoot& root, const Settings& settings)
{
    return writeScans(root, u"ScanHistory", settings.scanHistory, mostHistory);
}

std::vector<std::u16string> showScanHistory(const Settings& settings)
{
    return shown(settings.scanHistory);
}

std::optional<FileTime> timeOfBlock(const std::vector<std::byte>& block)
{
    if (block.size() != sizeof(FileTime::ticks))
        return std::nullopt;
    std::uint64_t ticks = 0;
    for (std::size_t index = block.size(); index-- > 0;)
        ticks = ticks << 8 | std::to_integer<std::uint64_t>(block[index]);
    return FileTime{static_cast<std::int64_t>(ticks)};
}

std::vector<std::byte> blockOfTime(FileTime time)
{
    std::vector<std::byte> block;
    const auto ticks = static_cast<std::uint64_t>(time.ticks);
    for (std::size_t index = 0; index < sizeof ticks; ++index)
        block.push_back(static_cast<std::byte>(ticks >> (8 * index)));
    return block;
}

std::optional<CScanNode> scanOfBlock(const std::vector<std::byte>& block)
{
    auto scan = scanNodeFromBlob(block, {});
    return scan ? std::optional(std::move(*scan)) : std::nullopt;
}

std::vector<std::byte> blockOfScan(const CScanNode& scan)
{
    return toBlob(scan);
}

}  // namespace kelvane
