#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <functional>

#include "app/ignored_list.h"
#include "app/settings_lists.h"
#include "app/settings_saver.h"
#include "base/filled_text.h"
#include "cli/arguments.h"
#include "cli/printable.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "cli/value_json.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::string_view ignoreExamples = "  kelvane-cli ignore a/cover.jpg b/cover.jpg\n"
                                            "  kelvane-cli ignore --list\n"
                                            "  kelvane-cli ignore --forget 3 --forget 5\n";

using Groups = std::vector<IgnoredGroup>;

struct RawIgnore {
    std::vector<std::string> files, forget;
    std::string settings;
    bool list = false, forgetAll = false, json = false;
};

void printText(const Groups& groups, std::ostream& out)
{
    for (std::size_t index = 0; index < groups.size(); ++index) {
        const IgnoredGroup& group = groups[index];
        out << (index > 0 ? "\n" : "")
            << filledText(TextId::ignoredHeading, {std::to_string(index + 1), toIso8601(group.when),
                                                   countedText(group.files.size(), TextId::oneFile, TextId::manyFiles)})
            << '\n';
        for (const IgnoredFile& file : group.files)
            out << printable(file.path) << '\n';
    }
}

void printJson(const Groups& groups, std::ostream& out)
{
    Json declarations = Json::array();
    for (const IgnoredGroup& group : groups) {
        Json files = Json::array();
        for (const IgnoredFile& file : group.files) {
            Json entry;
            addPath(entry, file.path);
            entry["size"] = file.size.bytes;
            files.push_back(std::move(entry));
        }
        declarations.push_back(
            {{"number", declarations.size() + 1}, {"when", timeJson(group.when)}, {"files", std::move(files)}});
    }
    out << dump({{"declarations", std::move(declarations)}}, Layout::indented) << '\n';
}

// What becomes of declarations that cannot be read.
enum class Unreadable : bool { stopsIt, mayGo };

// Read anew within the batch: another program may have declared something meanwhile.
ExitCode change(CRegistryAccess& settings, const Console& console, const std::function<void(Groups&)>& edit,
                Unreadable unreadable = Unreadable::stopsIt)
{
    const SettingsCode code = writeAsBatch(settings.store(), [&] {
        Settings kept;
        readIgnoredPairs(settings.root(), settings.context(), kept);
        // What cannot be read must not get lost by being written anew without it.
        if (unreadable == Unreadable::stopsIt && kept.ignoredGroups.size() != storedDeclarations(settings.root()))
            return SettingsCode::invalidData;
        edit(kept.ignoredGroups);
        if (kept.ignoredGroups.size() > mostIgnoredGroups)
            return SettingsCode::moreData;
        return writeIgnoredPairs(settings.root(), kept);
    });
    return code == SettingsCode::done ? ExitCode::done : complainNotWritten(settings, code, console);
}

ExitCode tellForgotten(const Groups& groups, const Console& console)
{
    for (const IgnoredGroup& group : groups) {
        std::string names;
        for (const IgnoredFile& file : group.files)
            (names += names.empty() ? "" : ", ") += file.path;
        complain(console, filledText(TextId::declarationForgotten, {names}));
    }
    return ExitCode::done;
}

ExitCode forgetAll(CRegistryAccess& settings, const Console& console)
{
    Groups forgotten;
    const ExitCode code = change(
        settings, console, [&](Groups& groups) { forgotten = std::exchange(groups, {}); }, Unreadable::mayGo);
    return code == ExitCode::done ? tellForgotten(forgotten, console) : code;
}

ExitCode forget(CRegistryAccess& settings, const RawIgnore& raw, const Console& console)
{
    const Groups& known = settings.settings().ignoredGroups;
    Groups chosen;
    for (const std::string& typed : raw.forget) {
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), number);
        const bool whole = error == std::errc() && end == typed.data() + typed.size();
        if (!whole)
            return refuse(console, filledText(TextId::forgetNeedsNumber, {typed}));
        if (number == 0 || number > known.size())
            return refuse(console, filledText(TextId::ignoreNoSuchNumber, {typed}));
        chosen.push_back(known[number - 1]);
    }
    const ExitCode code = change(settings, console, [&](Groups& groups) {
        for (const IgnoredGroup& group : chosen)
            std::erase(groups, group);
    });
    return code == ExitCode::done ? tellForgotten(chosen, console) : code;
}

// The file, or the message about it.
Result<IgnoredFile> readFile(const std::string& typed, Platform& platform, const Console& console)
{
    const auto item = platform.shell().parse(namedFile(typed).native());
    const auto file = item ? ignoredFileOf(platform.shell(), **item, console.cancel) : item.error();
    if (file)
        return file;
    const Error& error = file.error();
    const bool unrecognisable = error.kind == ErrorKind::notSupported && error.detail.empty();
    return Error{error.kind, 0,
                 typed + ": " + (unrecognisable ? filledText(TextId::ignoreNoIdentity) : errorText(error))};
}

Result<IgnoredGroup> readGroup(const std::vector<std::string>& paths, Platform& platform, const Console& console)
{
    const FileTime now = platform.clock().now();
    IgnoredGroup group{{now.ticks - now.ticks % ticksPerSecond}, {}};
    for (const std::string& path : paths) {
        auto file = readFile(path, platform, console);
        if (!file)
            return file.error();
        const auto twin = std::find_if(group.files.begin(), group.files.end(),
                                       [&](const IgnoredFile& known) { return known.identity == file->identity; });
        if (twin != group.files.end())
            return Error{ErrorKind::invalid, 0, filledText(TextId::ignoreSameFile, {twin->path, path})};
        group.files.push_back(std::move(*file));
    }
    if (blockOfIgnored(group).empty())
        return Error{ErrorKind::invalid, 0, filledText(TextId::ignoreTooMany)};
    return group;
}

bool says(const IgnoredGroup& group, const IgnoredGroup& other)
{
    return std::all_of(other.files.begin(), other.files.end(), [&](const IgnoredFile& file) {
        return std::any_of(group.files.begin(), group.files.end(), [&](const IgnoredFile& known) {
            return known.identity == file.identity && known.digest == file.digest;
        });
    });
}

// In the place of what said less of the same files.
ExitCode declare(CRegistryAccess& settings, const RawIgnore& raw, Platform& platform, const Console& console)
{
    if (settings.settings().ignoredGroups.size() >= mostIgnoredGroups)
        return refuse(console, filledText(TextId::ignoreListFull, {std::to_string(mostIgnoredGroups)}));
    const auto group = readGroup(raw.files, platform, console);
    if (!group)
        return console.cancel.cancelled() ? stopCancelled(console) : refuse(console, group.error().detail);
    const ExitCode code = change(settings, console, [&](Groups& groups) {
        std::erase_if(groups, [&](const IgnoredGroup& known) { return says(*group, known); });
        groups.push_back(*group);
    });
    if (code == ExitCode::done)
        complain(console, filledText(TextId::filesDeclared,
                                     {countedText(group->files.size(), TextId::oneFile, TextId::manyFiles)}));
    return code;
}

ExitCode act(const RawIgnore& raw, Platform& platform, const Console& console)
{
    const NamedSettings named = raw.files.empty() ? NamedSettings::mustExist : NamedSettings::mayBeNew;
    const auto settings = settingsInForce(raw.settings, named, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    if (!raw.files.empty())
        return declare(**settings, raw, platform, console);
    if (!raw.forget.empty())
        return forget(**settings, raw, console);
    if (raw.forgetAll)
        return forgetAll(**settings, console);
    if (!raw.json && (*settings)->settings().ignoredGroups.empty())
        complain(console, filledText(TextId::nothingDeclared));
    (raw.json ? printJson : printText)((*settings)->settings().ignoredGroups, console.out);
    return ExitCode::done;
}

}  // namespace

ExitCode ignoreVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::ignoreAbout), "ignore");
    app.footer(footerText({TextId::ignoreNotes, ignoreExamples, {}}));
    RawIgnore raw;
    app.add_option("FILE", raw.files, filledText(TextId::ignoreFilesHelp))->type_name("");
    app.add_flag("--list", raw.list, filledText(TextId::ignoreListHelp));
    app.add_option("--forget", raw.forget, filledText(TextId::ignoreForgetHelp))
        ->type_name("N")
        ->allow_extra_args(false);
    app.add_flag("--forget-all", raw.forgetAll, filledText(TextId::ignoreForgetAllHelp));
    app.add_flag("--json", raw.json, filledText(TextId::ignoreJsonHelp));
    app.add_option("--settings", raw.settings, filledText(TextId::settingsFileHelp))->type_name("FILE")->take_last();
    if (const auto over = parseArguments(app, "FILE FILE... | --list | --forget N | --forget-all", arguments, console))
        return *over;
    const int wanted = !raw.files.empty() + raw.list + !raw.forget.empty() + raw.forgetAll;
    if (wanted != 1 || raw.files.size() == 1)
        return refuse(console, filledText(TextId::ignoreNeedsFiles) + helpHint("ignore"));
    return act(raw, platform, console);
}

}  // namespace kelvane
