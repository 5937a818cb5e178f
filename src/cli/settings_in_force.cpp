#include "cli/settings_in_force.h"

#include "app/engine_settings.h"
#include "base/filled_text.h"
#include "cli/problems.h"
#include "cli/settings_report.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

Status checkExists(const std::filesystem::path& file, const std::string& typed, Platform& platform)
{
    const auto details = platform.files().details(file, Links::followed);
    if (!details)
        return Error{details.error().kind, 0, typed + ": " + errorText(details.error())};
    if (details->kind != FileKind::regular)
        return Error{ErrorKind::wrongType, 0, typed + ": " + filledText(TextId::notRegularFile)};
    return {};
}

}  // namespace

std::filesystem::path namedFile(const std::string& typed)
{
    std::error_code error;
    const std::filesystem::path path = nativeFromBytes(typed);
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute;
}

Result<std::unique_ptr<CRegistryAccess>> settingsInForce(const std::string& iniFile, NamedSettings named,
                                                         Platform& platform, const Console& console)
{
    auto settings = std::make_unique<CRegistryAccess>(platform);
    if (iniFile.empty()) {
        settings->chooseLocation({});
    } else {
        const std::filesystem::path file = namedFile(iniFile);
        const Status there = checkExists(file, iniFile, platform);
        const bool isNew = !there && there.error().kind == ErrorKind::notFound;
        if (!there && !(isNew && named == NamedSettings::mayBeNew))
            return there.error();
        settings->useLocation({{}, file});
    }
    settings->loadForReading();
    if (const std::string complaint = settings->store().complaint(); !complaint.empty())
        complain(console, filledText(TextId::warning, {complaint}));
    return settings;
}

ExitCode complainNotWritten(const CRegistryAccess& settings, SettingsCode code, const Console& console)
{
    complain(console, filledText(TextId::placeNotWritten, {placeText(settings.location()), settingsFailure(code)}));
    return ExitCode::incomplete;
}

Result<ScanSettings> scanSettings(const std::string& iniFile, Platform& platform, const Console& console)
{
    const auto settings = settingsInForce(iniFile, NamedSettings::mustExist, platform, console);
    if (!settings)
        return settings.error();
    ScanSettings taken;
    applyEngineNumbers((*settings)->settings(), taken.options);
    taken.settings = (*settings)->settings();
    if (auto plugins = (*settings)->contentPlugins((*settings)->settings()))
        taken.options.extraction.plugins = *std::move(plugins);
    else
        complain(console, plugins.error().detail);
    return taken;
}

Result<EngineOptions> engineSettings(const std::string& iniFile, Platform& platform, const Console& console)
{
    const auto settings = scanSettings(iniFile, platform, console);
    if (!settings)
        return settings.error();
    return settings->options;
}

}  // namespace kelvane
