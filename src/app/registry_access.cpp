#include "app/registry_access.h"

#include <algorithm>

#include "app/file_comparison_tool.h"
#include "app/plugin_list.h"
#include "app/settings_loader.h"
#include "app/settings_saver.h"
#include "app/settings_transfer.h"
#include "app/text_lists.h"
#include "app/version_info.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "base/words.h"
#include "platform/ini_store.h"
#include "platform/native_text.h"
#include "platform/platform.h"

namespace kelvane {
namespace {

TextId reasonOf(SettingsCode code)
{
    switch (code) {
    case SettingsCode::accessDenied:
    case SettingsCode::noKey:
        return TextId::problemAccessDenied;
    case SettingsCode::notFound:
        return TextId::problemNotFound;
    case SettingsCode::tooLong:
        return TextId::settingsTooLong;
    default:
        return TextId::problemIo;
    }
}

ErrorKind kindOf(SettingsCode code)
{
    if (code == SettingsCode::notFound)
        return ErrorKind::notFound;
    return code == SettingsCode::accessDenied || code == SettingsCode::noKey ? ErrorKind::accessDenied : ErrorKind::io;
}

std::string notWritten(const SettingsLocation& location, const std::string& reason)
{
    const std::u16string place = location.isIni() ? textOfPath(location.iniPath) : location.keyPath;
    return filledText(TextId::settingsNotWritten, {toUtf8(place) + ": " + reason});
}

SettingsCode deleteEverything(const SettingsRoot& root)
{
    SettingsNode node(root, {}, SettingsAccess::writing);
    for (const std::u16string& name : node.subsectionNames()) {
        if (const SettingsCode code = node.deleteSubsection(name); code != SettingsCode::done)
            return code;
    }
    for (const std::u16string& name : node.valueNames()) {
        if (const SettingsCode code = node.deleteValue(name); code != SettingsCode::done)
            return code;
    }
    return SettingsCode::done;
}

Error located(const SettingsLocation& location, SettingsCode code)
{
    return {kindOf(code), 0, notWritten(location, settingsFailure(code))};
}

Error located(const SettingsLocation& location, const Error& error)
{
    const std::string reason = error.detail.empty() ? filledText(TextId::problemIo) : error.detail;
    return {error.kind, error.systemCode, notWritten(location, reason)};
}

// A library goes by its file's name, with or without the extension.
std::vector<ContentPluginEntry> withoutSwitchedOff(std::vector<ContentPluginEntry> entries, const Settings& settings)
{
    std::erase_if(entries, [&](const ContentPluginEntry& entry) {
        return std::any_of(settings.pluginsOff.begin(), settings.pluginsOff.end(), [&](const std::u16string& off) {
            const std::string name = asciiLower(toUtf8(off));
            return name == asciiLower(bytesFromNative(entry.path.filename().native())) ||
                   name == asciiLower(bytesFromNative(entry.path.stem().native()));
        });
    });
    return entries;
}

}  // namespace

std::string settingsFailure(SettingsCode code)
{
    return filledText(reasonOf(code));
}

SettingsPorts settingsPorts(Platform& platform)
{
    return {.files = platform.files(),
            .output = platform.output(),
            .registry = platform.registry(),
            .places = platform.places(),
            .facts = platform.systemFacts(),
            .folding = platform.folding(),
            .clock = platform.clock(),
            .makeIni = [&platform](const std::filesystem::path& path) {
                return makeIniStore(platform.files(), platform.output(), platform.folding(), path);
            }};
}

CRegistryAccess::CRegistryAccess(Platform& platform) : CRegistryAccess(settingsPorts(platform)) {}

CRegistryAccess::CRegistryAccess(SettingsPorts ports) : ports_(std::move(ports)) {}

CRegistryAccess::~CRegistryAccess() = default;

SettingsContext CRegistryAccess::context() const
{
    return {.facts = ports_.facts,
            .places = ports_.places,
            .folding = ports_.folding,
            .now = ports_.clock.now(),
            .version = CAppVersionInfo::versionNumber(),
            .inIniFile = location_.isIni(),
            .translation = translation_,
            .interfaceBits = interfaceBits_};
}

void CRegistryAccess::chooseLocation(const std::filesystem::path& iniArgument)
{
    useLocation(chooseSettingsLocation(iniArgument, ports_.places, ports_.files));
}

void CRegistryAccess::useLocation(const SettingsLocation& location)
{
    location_ = location;
    ini_ = location.isIni() ? ports_.makeIni(location.iniPath) : nullptr;
}

void CRegistryAccess::load(Questions& questions)
{
    const bool first = isFirstRun(root());
    interfaceBits_ = first ? interfaceBits(questions.askInterfaceMode()) : 0;
    settings_ = loadSettings(root(), context());
    countStart(settings_, context());
    settings_.comparisonTool = findComparisonTool(ports_.places.programFolder(), ports_.files);
    if (const std::string complaint = store().complaint(); !complaint.empty())
        questions.showError(toUtf16(complaint));
}

void CRegistryAccess::loadForReading()
{
    interfaceBits_ = isFirstRun(root()) ? interfaceBits(InterfaceMode::standard) : 0;
    settings_ = loadSettings(root(), context());
}

SettingsCode CRegistryAccess::save()
{
    const std::vector<const SettingRow*> rows(byHand_.begin(), byHand_.end());
    const SettingsCode code = saveSettings(root(), settings_, context(), rows);
    if (code == SettingsCode::done && settings_.persistence != PersistenceMode::bookkeepingOnly)
        byHand_.clear();
    return code;
}

Status CRegistryAccess::switchTo(PersistenceMode mode)
{
    if (mode == PersistenceMode::registry && location_.isIni())
        return moveTo(registryLocation(), mode);
    if (mode == PersistenceMode::iniFile && !location_.isIni())
        return moveTo({{}, personalIniFile(ports_.places)}, mode);
    const PersistenceMode before = std::exchange(settings_.persistence, mode);
    if (const SettingsCode code = save(); code != SettingsCode::done) {
        settings_.persistence = before;
        return located(location_, code);
    }
    return {};
}

// The old place is touched only when the new one holds everything.
Status CRegistryAccess::moveTo(const SettingsLocation& target, PersistenceMode mode)
{
    std::unique_ptr<SettingsStore> ini;
    if (target.isIni()) {
        if (const Status made = ports_.output.createFolders(target.iniPath.parent_path()); !made)
            return located(target, made.error());
        ini = ports_.makeIni(target.iniPath);
    }
    const bool isNew = ini && !ports_.files.details(target.iniPath, Links::followed);
    Settings moved = settings_;
    moved.persistence = mode;
    const SettingsCode code = copyTo({ini ? ini.get() : &ports_.registry, target}, moved);
    if (code != SettingsCode::done) {
        if (isNew)  // what there is of it would be chosen at the next start
            static_cast<void>(ports_.output.remove(target.iniPath));
        return located(target, code);
    }
    if (location_.isIni()) {
        if (Status left = leaveIniFile(location_.iniPath); !left)
            return left;
    }
    settings_ = std::move(moved);
    location_ = target;
    ini_ = std::move(ini);
    return {};
}

SettingsCode CRegistryAccess::copyTo(const SettingsRoot& to, const Settings& settings)
{
    TransferReport report;  // what is damaged here has nothing to move
    return writeAsBatch(*to.store, [&] {
        const SettingsCode copied = transferSettings(root(), to, context(), report);
        return copied == SettingsCode::done ? writeSettings(to, settings, context()) : copied;
    });
}

// A file that would stay would be chosen again at the next start, with its old settings. One that was never written
// is none.
Status CRegistryAccess::leaveIniFile(const std::filesystem::path& left)
{
    std::filesystem::path backup = left;
    backup += ".bak";
    const Status renamed = ports_.output.replace(left, backup);
    if (renamed || renamed.error().kind == ErrorKind::notFound)
        return {};
    return located({{}, left}, renamed.error());
}

SettingsCode CRegistryAccess::eraseAll()
{
    return writeAsBatch(store(), [&] { return deleteEverything(root()); });
}

Result<std::vector<ContentPluginEntry>> CRegistryAccess::contentPlugins(const Settings& settings) const
{
    if (settings.pluginList.empty())
        return withoutSwitchedOff(settings.contentPlugins, settings);
    const std::filesystem::path file = pathOfText(settings.pluginList);
    const auto refused = [&](const std::string& reason) {
        return Error{ErrorKind::io, 0, filledText(TextId::pluginListNotRead, {toUtf8(settings.pluginList), reason})};
    };
    if (const auto there = ports_.files.details(file, Links::followed); !there)
        return refused(there.error().detail);
    const auto list = ports_.makeIni(file);
    auto entries = readPluginList({list.get(), {{}, file}}, file.parent_path());
    if (const std::string complaint = list->complaint(); !complaint.empty())
        return refused(complaint);
    return withoutSwitchedOff(std::move(entries), settings);
}

std::u16string CRegistryAccess::failureText(SettingsCode code) const
{
    return toUtf16(notWritten(location_, settingsFailure(code)));
}

}  // namespace kelvane
