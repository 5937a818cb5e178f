#include "app/kept_scans.h"

#include <algorithm>

#include "app/settings_lists.h"
#include "app/settings_saver.h"

namespace kelvane {
namespace {

using Scans = std::vector<KeptScan>;

std::u16string trimmedName(std::u16string_view name)
{
    const std::size_t first = name.find_first_not_of(u" \t\r\n");
    if (first == std::u16string_view::npos)
        return {};
    return std::u16string(name.substr(first, name.find_last_not_of(u" \t\r\n") - first + 1));
}

Scans::const_iterator find(const Scans& scans, std::u16string_view name, const TextFolding& folding)
{
    const std::u16string wanted = folding.lower(trimmedName(name));
    return std::find_if(scans.begin(), scans.end(), [&](const KeptScan& scan) {
        return folding.lower(trimmedName(scan.definition.name())) == wanted;
    });
}

// Everything that a definition says but its name.
std::vector<std::byte> contentsOf(CScanNode definition)
{
    definition.setName({});
    return blockOfScan(definition);
}

Scans::iterator findDefinition(Scans& scans, const CScanNode& definition)
{
    const std::vector<std::byte> wanted = contentsOf(definition);
    return std::find_if(scans.begin(), scans.end(),
                        [&](const KeptScan& scan) { return contentsOf(scan.definition) == wanted; });
}

}  // namespace

const KeptScan* findSavedScan(const Settings& settings, std::u16string_view name, const TextFolding& folding)
{
    const auto found = find(settings.savedScans, name, folding);
    return found != settings.savedScans.end() ? &*found : nullptr;
}

KeptScanResult addSavedScan(Settings& settings, CScanNode definition, const TextFolding& folding)
{
    definition.setName(trimmedName(definition.name()));
    if (definition.name().empty())
        return KeptScanResult::noName;
    if (blockOfScan(definition).empty())
        return KeptScanResult::tooLong;
    Scans& scans = settings.savedScans;
    const auto index = find(scans, definition.name(), folding) - scans.begin();
    if (index == std::ssize(scans))
        scans.emplace_back();
    scans[static_cast<std::size_t>(index)] = {std::move(definition), {}, false};
    return KeptScanResult::done;
}

KeptScanResult renameSavedScan(Settings& settings, std::u16string_view from, std::u16string_view to,
                               const TextFolding& folding)
{
    Scans& scans = settings.savedScans;
    const auto renamed = find(scans, from, folding);
    if (renamed == scans.end())
        return KeptScanResult::notFound;
    if (trimmedName(to).empty())
        return KeptScanResult::noName;
    if (const auto other = find(scans, to, folding); other != scans.end() && other != renamed)
        return KeptScanResult::nameTaken;
    CScanNode definition = renamed->definition;
    definition.setName(trimmedName(to));
    if (blockOfScan(definition).empty())
        return KeptScanResult::tooLong;
    scans[static_cast<std::size_t>(renamed - scans.cbegin())].definition = std::move(definition);
    return KeptScanResult::done;
}

KeptScanResult removeSavedScan(Settings& settings, std::u16string_view name, const TextFolding& folding)
{
    const auto removed = find(settings.savedScans, name, folding);
    if (removed == settings.savedScans.end())
        return KeptScanResult::notFound;
    settings.savedScans.erase(removed);
    return KeptScanResult::done;
}

SettingsCode dropCleanedScan(CRegistryAccess& access, std::u16string_view name)
{
    Settings& settings = access.settings();
    const bool dropped = removeSavedScan(settings, name, access.context().folding) == KeptScanResult::done;
    if (!dropped || settings.persistence == PersistenceMode::bookkeepingOnly)
        return SettingsCode::done;
    // Read anew: another program may have kept a scan meanwhile.
    return writeAsBatch(access.store(), [&] {
        Settings stored;
        readSavedScans(access.root(), access.context(), stored);
        (void)removeSavedScan(stored, name, access.context().folding);
        return writeSavedScans(access.root(), stored);
    });
}

void rememberScan(Settings& settings, CScanNode definition, FileTime when)
{
    if (blockOfScan(definition).empty())
        return;
    Scans& history = settings.scanHistory;
    if (const auto older = findDefinition(history, definition); older != history.end())
        history.erase(older);
    history.insert(history.begin(), {std::move(definition), when, false});
    history.resize(std::min(history.size(), mostHistory));
}

void markStale(Settings& settings, const CScanNode& definition)
{
    if (const auto found = findDefinition(settings.scanHistory, definition); found != settings.scanHistory.end())
        found->stale = true;
}

bool removeFromHistory(Settings& settings, std::size_t index)
{
    if (index >= settings.scanHistory.size())
        return false;
    settings.scanHistory.erase(settings.scanHistory.begin() + static_cast<std::ptrdiff_t>(index));
    return true;
}

void clearHistory(Settings& settings)
{
    settings.scanHistory.clear();
}

}  // namespace kelvane
