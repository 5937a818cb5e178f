#include "app/registry_access.h"

#include "app/file_comparison_tool.h"
#include "app/settings_loader.h"
#include "app/settings_saver.h"
#include "app/settings_transfer.h"
#include "app/text_lists.h"
#include "app/version_info.h"
#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {
namespace {

const char* reasonOf(SettingsCode code)
{
    switch (code) {
    case SettingsCode::accessDenied:
        return "permission denied";
    case SettingsCode::noKey:
        return "cannot be opened for writing";
    case SettingsCode::tooLong:
        return "a value is too long";
    default:
        return "input or output error";
    }
}

ErrorKind kindOf(SettingsCode code)
{
    return code == SettingsCode::accessDenied || code == SettingsCode::noKey ? ErrorKind::accessDenied : ErrorKind::io;
}

std::u16string filled(std::u16string_view pattern, std::u16string_view value)
{
    std::u16string result(pattern);
    if (const auto at = result.find(u"%1"); at != std::u16string::npos)
        result.replace(at, 2, value);
    return result;
}

std::u16string notWritten(const SettingsLocation& location, std::string_view reason)
{
    const std::u16string place = location.isIni() ? textOfPath(location.iniPath) : location.keyPath;
    return filled(text(TextId::settingsNotWritten), place + u": " + toUtf16(reason));
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

Error located(const SettingsLocation& location, ErrorKind kind, std::string_view reason)
{
    return {kind, 0, toUtf8(notWritten(location, reason))};
}

}  // namespace

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
            .translation = translation_};
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
    SettingsContext context = this->context();
    const bool first = isFirstRun(root());
    if (first)
        context.interfaceBits = interfaceBits(questions.askInterfaceMode());
    settings_ = loadSettings(root(), context);
    settings_.firstRun = first;
    countStart(settings_, context);
    settings_.comparisonTool = findComparisonTool(ports_.places.programFolder(), ports_.files);
    if (const std::string complaint = store().complaint(); !complaint.empty())
        questions.showError(toUtf16(complaint));
}

void CRegistryAccess::loadForReading()
{
    SettingsContext context = this->context();
    if (isFirstRun(root()))
        context.interfaceBits = interfaceBits(InterfaceMode::standard);
    settings_ = loadSettings(root(), context);
}

SettingsCode CRegistryAccess::save()
{
    return saveSettings(root(), settings_, context());
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
        return located(location_, kindOf(code), reasonOf(code));
    }
    return {};
}

// The old place is touched only when the new one holds everything.
Status CRegistryAccess::moveTo(const SettingsLocation& target, PersistenceMode mode)
{
    std::unique_ptr<SettingsStore> ini;
    if (target.isIni()) {
        if (const Status made = ports_.output.createFolders(target.iniPath.parent_path()); !made)
            return located(target, made.error().kind, made.error().detail);
        ini = ports_.makeIni(target.iniPath);
    }
    const SettingsRoot to{ini ? ini.get() : &ports_.registry, target};
    Settings moved = settings_;
    moved.persistence = mode;
    TransferReport report;
    const SettingsCode code = writeAsBatch(*to.store, [&] {
        const SettingsCode copied = transferSettings(root(), to, context(), report);
        return copied == SettingsCode::done ? writeSettings(to, moved, context()) : copied;
    });
    if (code != SettingsCode::done)
        return located(target, kindOf(code), reasonOf(code));
    if (location_.isIni()) {
        if (Status left = leaveIniFile(location_.iniPath); !left)
            return left;
    }
    settings_ = std::move(moved);
    location_ = target;
    ini_ = std::move(ini);
    return {};
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
    return located({{}, left}, renamed.error().kind, renamed.error().detail);
}

SettingsCode CRegistryAccess::eraseAll()
{
    return writeAsBatch(store(), [&] { return deleteEverything(root()); });
}

std::u16string CRegistryAccess::failureText(SettingsCode code) const
{
    return notWritten(location_, reasonOf(code));
}

}  // namespace kelvane
