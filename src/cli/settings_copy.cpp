#include "cli/settings_copy.h"

#include "app/settings_loader.h"
#include "app/settings_saver.h"
#include "app/settings_transfer.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/settings_report.h"

namespace kelvane {
namespace {

SettingsCode copyAsBatch(const SettingsRoot& from, const SettingsRoot& to, const SettingsContext& context,
                         TransferReport& report)
{
    return writeAsBatch(*to.store, [&] { return transferSettings(from, to, context, report); });
}

ExitCode tell(const TransferReport& report, const std::string& place, const Console& console)
{
    for (const SkippedSetting& skipped : report.skipped)
        complain(console, filledText(TextId::settingSkipped, {toUtf8(skipped.name), skipped.reason}));
    complain(console, filledText(report.values == 1 ? TextId::oneValueWritten : TextId::manyValuesWritten,
                                 {place, std::to_string(report.values)}));
    return report.skipped.empty() ? ExitCode::done : ExitCode::incomplete;
}

// Declarations may stand there before any other setting was ever saved.
bool holdsNothing(CRegistryAccess& settings)
{
    return isFirstRun(settings.root()) && settings.settings().ignoredGroups.empty();
}

}  // namespace

ExitCode exportSettings(CRegistryAccess& settings, const std::string& file, bool overwrite, Platform& platform,
                        const Console& console)
{
    if (holdsNothing(settings))
        return refuse(console, filledText(TextId::nothingToExport, {placeText(settings.location())}));
    const std::filesystem::path path = namedFile(file);
    const bool exists = platform.files().details(path, Links::asThemselves).ok();
    if (exists && !overwrite)
        return refuse(console, filledText(TextId::exportFileExists, {file}));
    CRegistryAccess target(platform);
    target.useLocation({{}, path});
    TransferReport report;
    const SettingsCode code = copyAsBatch(settings.root(), target.root(), settings.context(), report);
    return code == SettingsCode::done ? tell(report, file, console) : complainNotWritten(target, code, console);
}

ExitCode importSettings(CRegistryAccess& settings, const std::string& file, Platform& platform, const Console& console)
{
    auto source = settingsInForce(file, NamedSettings::mustExist, platform, console);
    if (!source)
        return refuse(console, source.error().detail);
    if (holdsNothing(**source))
        return refuse(console, filledText(TextId::holdsNoSettings, {file}));
    TransferReport report;
    const SettingsCode code = copyAsBatch((*source)->root(), settings.root(), settings.context(), report);
    return code == SettingsCode::done ? tell(report, placeText(settings.location()), console)
                                      : complainNotWritten(settings, code, console);
}

}  // namespace kelvane
