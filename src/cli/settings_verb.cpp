#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>

#include "app/settings_saver.h"
#include "base/filled_text.h"
#include "base/size_text.h"
#include "base/utf.h"
#include "base/words.h"
#include "cli/arguments.h"
#include "cli/choices.h"
#include "cli/settings_copy.h"
#include "cli/settings_in_force.h"
#include "cli/settings_report.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::string_view settingsExamples = "  kelvane-cli settings list\n"
                                              "  kelvane-cli settings get nHugeFileMB\n"
                                              "  kelvane-cli settings set nHugeFileMB 20\n"
                                              "  kelvane-cli settings export my.ini\n"
                                              "  kelvane-cli settings import my.ini\n"
                                              "  kelvane-cli settings --clear-cache\n";

enum class Action { list, get, set, exportFile, importFile };

constexpr std::array actions = {
    Choice<Action>{"list", Action::list},         Choice<Action>{"get", Action::get},
    Choice<Action>{"set", Action::set},           Choice<Action>{"export", Action::exportFile},
    Choice<Action>{"import", Action::importFile},
};

struct RawSettings {
    std::vector<std::string> words;
    std::string settings;
    bool json = false, overwrite = false, clearCache = false;
};

std::string unknownKey(const std::string& typed)
{
    std::vector<std::string> keys;
    for (const SettingRow& row : settingsTable())
        keys.push_back(toUtf8(row.key));
    const std::vector<std::string> near = nearestWords(typed, keys);
    std::string offer;
    for (const std::string& key : near)
        offer += (offer.empty() ? "" : ", ") + key;
    return filledText(TextId::unknownSetting, {typed}) +
           (near.empty() ? "" : ' ' + filledText(TextId::didYouMean, {offer})) + filledText(TextId::listPrintsSettings);
}

std::string cacheText(TextId text, const RunCacheFigures& figures)
{
    const std::string count = countedText(figures.values, TextId::oneDescriptor, TextId::manyDescriptors);
    return filledText(text, {count, sizeText({figures.bytes})});
}

ExitCode clearCache(const RawSettings& raw, RunCaches& caches, const Console& console)
{
    if (!raw.words.empty() || !raw.settings.empty() || raw.json || raw.overwrite)
        return refuse(console, filledText(TextId::clearCacheAlone) + helpHint("settings"));
    const Result<RunCacheFigures> before = caches.figures();  // what cannot be read can be cleared all the same
    if (Status cleared = caches.clear(); !cleared) {
        complain(console, filledText(TextId::cacheNotCleared, {cleared.error().detail}));
        return ExitCode::incomplete;
    }
    console.out << cacheText(TextId::cacheCleared, before ? *before : RunCacheFigures{}) << '\n';
    return ExitCode::done;
}

ExitCode list(CRegistryAccess& settings, const RawSettings& raw, RunCaches& caches, const Console& console)
{
    const Result<RunCacheFigures> cache = caches.figures();
    if (!raw.json) {
        writeSettingsText(settings, console.out);
        if (cache)
            console.out << '\n' << cacheText(TextId::cacheHolds, *cache) << '\n';
        return ExitCode::done;
    }
    std::vector<const SettingRow*> rows;
    for (const SettingRow& row : settingsTable())
        rows.push_back(&row);
    writeSettingsJson(settings, rows, console.out, cache ? &*cache : nullptr);
    return ExitCode::done;
}

ExitCode get(CRegistryAccess& settings, const RawSettings& raw, const Console& console)
{
    std::vector<const SettingRow*> rows;
    for (const std::string& key : raw.words) {
        const SettingRow* row = findSetting(toUtf16(key));
        if (row == nullptr)
            return refuse(console, unknownKey(key));
        rows.push_back(row);
    }
    if (raw.json) {
        writeSettingsJson(settings, rows, console.out);
        return ExitCode::done;
    }
    for (const SettingRow* row : rows)
        writeSettingValue(settings, *row, console.out);
    return ExitCode::done;
}

// Decimal with or without a sign, or hexadecimal after "0x".
std::optional<std::uint32_t> parseStored(std::string_view typed)
{
    const bool hexadecimal = typed.starts_with("0x") || typed.starts_with("0X");
    std::int64_t number = 0;
    const char* first = typed.data() + (hexadecimal ? 2 : 0);
    const char* last = typed.data() + typed.size();
    const auto [end, error] = std::from_chars(first, last, number, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != last || number < INT32_MIN || number > UINT32_MAX)
        return std::nullopt;
    return static_cast<std::uint32_t>(number);
}

ExitCode write(CRegistryAccess& settings, const Console& console, const std::function<SettingsCode(SettingsNode&)>& put)
{
    const SettingsCode code = writeAsBatch(settings.store(), [&] {
        SettingsNode general(settings.root(), generalSection, SettingsAccess::writing);
        if (!general.isOpen())
            return SettingsCode::noKey;
        // Its default is another one as soon as anything is stored.
        const bool isFirst = settings.settings().firstRun;
        const SettingsCode kept =
            isFirst ? general.writeNumber(settings.settings().flags, u"binFlags") : SettingsCode::done;
        return kept == SettingsCode::done ? put(general) : kept;
    });
    return code == SettingsCode::done ? ExitCode::done : complainNotWritten(settings, code, console);
}

ExitCode setNumber(CRegistryAccess& settings, const SettingRow& row, const std::string& typed, const Console& console)
{
    const auto& rule = std::get<NumberRule>(row.rule);
    const std::string key = toUtf8(row.key);
    const std::string range = rangeText(rule);
    const auto stored = parseStored(typed);
    const bool below = typed.starts_with('-') && !rule.isSigned && !isBits(row);  // would count as a very large one
    if (!stored || below)
        return refuse(console, range.empty() ? filledText(TextId::settingTakesNumber, {key, typed})
                                             : filledText(TextId::settingTakesNumberIn, {key, range, typed}));
    const std::uint32_t taken = acceptedNumber(rule, *stored, settings.context());
    if (taken != *stored && rule.clamp == Clamp::elseDefault)
        return refuse(console, filledText(TextId::settingTakesRange, {key, range, typed}));
    const ExitCode code =
        write(settings, console, [&](SettingsNode& general) { return general.writeNumber(taken, row.key); });
    if (code == ExitCode::done && taken != *stored)
        complain(console, filledText(TextId::settingIsNow, {key, std::to_string(taken), typed, range}));
    return code;
}

ExitCode set(CRegistryAccess& settings, const RawSettings& raw, const Console& console)
{
    const SettingRow* row = findSetting(toUtf16(raw.words[0]));
    if (row == nullptr)
        return refuse(console, unknownKey(raw.words[0]));
    if (std::holds_alternative<NumberRule>(row->rule))
        return setNumber(settings, *row, raw.words[1], console);
    if (!std::holds_alternative<TextRule>(row->rule))
        return refuse(console, filledText(TextId::settingNotSingle, {raw.words[0]}));
    if (!isValidUtf8(raw.words[1]))
        return refuse(console, filledText(TextId::settingNotUtf8, {raw.words[0]}));
    return write(settings, console,
                 [&](SettingsNode& general) { return general.writeString(toUtf16(raw.words[1]), row->key); });
}

std::string wrongCount(Action action)
{
    switch (action) {
    case Action::list:
        return filledText(TextId::listTakesNothing);
    case Action::get:
        return filledText(TextId::getNeedsKey);
    case Action::set:
        return filledText(TextId::setNeedsValue);
    default:
        return filledText(TextId::exportNeedsFile);
    }
}

bool countFits(Action action, std::size_t count)
{
    switch (action) {
    case Action::list:
        return count == 0;
    case Action::get:
        return count > 0;
    case Action::set:
        return count == 2;
    default:
        return count == 1;
    }
}

ExitCode act(Action action, const RawSettings& raw, Platform& platform, const Console& console)
{
    const bool reads = action == Action::list || action == Action::get || action == Action::exportFile;
    auto settings =
        settingsInForce(raw.settings, reads ? NamedSettings::mustExist : NamedSettings::mayBeNew, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    switch (action) {
    case Action::list:
        return list(**settings, raw, platform.runCaches(), console);
    case Action::get:
        return get(**settings, raw, console);
    case Action::set:
        return set(**settings, raw, console);
    case Action::exportFile:
        return exportSettings(**settings, raw.words[0], raw.overwrite, platform, console);
    case Action::importFile:
        break;
    }
    return importSettings(**settings, raw.words[0], platform, console);
}

}  // namespace

ExitCode settingsVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::settingsAbout), "settings");
    app.footer(footerText({TextId::settingsNotes, settingsExamples, {}}));
    RawSettings raw;
    app.add_option("WORD", raw.words, filledText(TextId::settingsWordHelp))->type_name("");
    app.add_option("--settings", raw.settings, filledText(TextId::settingsFileHelp))->type_name("FILE")->take_last();
    app.add_flag("--json", raw.json, filledText(TextId::settingsJsonHelp));
    app.add_flag("--overwrite", raw.overwrite, filledText(TextId::settingsOverwriteHelp));
    app.add_flag("--clear-cache", raw.clearCache, filledText(TextId::helpClearCache));
    if (const auto over = parseArguments(
            app, "list | get KEY... | set KEY VALUE | export FILE | import FILE | --clear-cache", arguments, console))
        return *over;
    if (raw.clearCache)
        return clearCache(raw, platform.runCaches(), console);
    if (raw.words.empty())
        return refuse(console, filledText(TextId::settingsNeedsAction) + helpHint("settings"));
    const auto action = choose<Action>(TextId::unknownAction, raw.words.front(), actions);
    if (!action)
        return refuse(console, action.error().detail);
    raw.words.erase(raw.words.begin());
    if (!countFits(*action, raw.words.size()))
        return refuse(console, wrongCount(*action));
    return act(*action, raw, platform, console);
}

}  // namespace kelvane
