#include "app/settings_exchange.h"

#include "app/settings_loader.h"
#include "app/settings_saver.h"
#include "base/utf.h"

namespace kelvane {
namespace {

Result<TransferReport> copyAll(CRegistryAccess& from, CRegistryAccess& to)
{
    TransferReport report;
    const SettingsCode code =
        writeAsBatch(to.store(), [&] { return transferSettings(from.root(), to.root(), from.context(), report); });
    if (code != SettingsCode::done)
        return Error{ErrorKind::io, 0, toUtf8(to.failureText(code))};
    return report;
}

}  // namespace

Result<TransferReport> exportSettingsTo(const std::filesystem::path& file, CRegistryAccess& settings,
                                        Platform& platform)
{
    if (const SettingsCode code = settings.save(); code != SettingsCode::done)
        return Error{ErrorKind::io, 0, toUtf8(settings.failureText(code))};
    CRegistryAccess target(platform);
    target.useLocation({{}, file});
    return copyAll(settings, target);
}

Result<TransferReport> importSettingsFrom(const std::filesystem::path& file, CRegistryAccess& settings,
                                          Platform& platform)
{
    CRegistryAccess source(platform);
    source.useLocation({{}, file});
    if (const SettingsCode code = settings.save(); code != SettingsCode::done)  // of which the file may hold nothing
        return Error{ErrorKind::io, 0, toUtf8(settings.failureText(code))};
    auto report = copyAll(source, settings);
    if (report) {
        const std::u16string tool = settings.settings().comparisonTool;  // found, not stored
        settings.settings() = loadSettings(settings.root(), settings.context());
        settings.settings().comparisonTool = tool;
    }
    return report;
}

}  // namespace kelvane
