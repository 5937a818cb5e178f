#include "app/cleanup_bookkeeping.h"

#include <algorithm>
#include <limits>

#include "app/kept_scans.h"
#include "app/settings_saver.h"
#include "app/settings_table.h"

namespace kelvane {
namespace {

constexpr std::u16string_view counterName = u"nDeduped";

std::uint32_t sum(std::uint32_t count, std::uint64_t more)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(most, count + std::min(most, more)));
}

// Read anew: another program may have cleaned up meanwhile.
SettingsCode count(CRegistryAccess& access, std::uint64_t removed)
{
    Settings& settings = access.settings();
    std::uint32_t stored = 0;
    const auto isKept = [&] {
        const SettingsNode general(access.root(), generalSection, SettingsAccess::reading);
        return general.readNumber(counterName, stored) == SettingsCode::done;
    };
    if (!isKept()) {
        settings.deduped = sum(settings.deduped, removed);
        return SettingsCode::done;
    }
    return writeAsBatch(access.store(), [&] {
        SettingsNode general(access.root(), generalSection, SettingsAccess::writing);
        static_cast<void>(general.readNumber(counterName, stored));
        settings.deduped = sum(stored, removed);
        return general.writeNumber(settings.deduped, counterName);
    });
}

}  // namespace

CleanupOptions cleanupOptionsFrom(const Settings& settings)
{
    CleanupOptions options;
    options.writeLog = (settings.flags & settings_flag::cleanupLog) != 0;
    options.expert = (settings.flags & settings_flag::expert) != 0;
    options.noHardLinks = (settings.moreOptions & more_setting::noHardLinks) != 0;
    options.noSymbolicLinks = (settings.moreOptions & more_setting::noSymbolicLinks) != 0;
    options.quietSummary = (settings.noticesOff & cleanup_notice::summary) != 0;
    options.offerElevation = (settings.noticesOff & cleanup_notice::elevation) == 0;
    return options;
}

SettingsCode noteCleanup(CRegistryAccess& access, const CScanNode& definition, const CleanupReport& report)
{
    access.settings().noticesOff |= report.noticesOff;
    if (report.removed == 0)
        return SettingsCode::done;
    markStale(access.settings(), definition);
    const SettingsCode counted = count(access, report.removed);
    const SettingsCode dropped = dropCleanedScan(access, definition.name());
    return counted != SettingsCode::done ? counted : dropped;
}

}  // namespace kelvane
