#include <CLI/CLI.hpp>
#include <map>

#include "base/filled_text.h"
#include "base/words.h"
#include "cleanup/plan_check.h"
#include "cli/arguments.h"
#include "cli/clean_options.h"
#include "cli/clean_report.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::string_view examples =
    "  kelvane-cli clean copies.ikvs --keep oldest --dry-run\n"
    "  kelvane-cli clean copies.ikvs --prefer ~/Pictures --keep newest --keep biggest --dry-run\n"
    "  kelvane-cli clean copies.ikvs --keep first --sort path --protect ~/Archive --dry-run\n"
    "  kelvane-cli clean copies.ikvs --keep-under ~/Music --link hard --dry-run --json\n";

// What the plan asks of the disk.
class DiskFacts {
public:
    explicit DiskFacts(FileSystem& files) : files_(files) {}

    bool onNetwork(const ShellItem& item)
    {
        const FileIdentity identity = item.info().identity;
        if (!identity.known())
            return asksForNetwork(item);
        const auto [known, isNew] = networks_.try_emplace(identity.volume, false);
        if (isNew)
            known->second = asksForNetwork(item);
        return known->second;
    }

    std::uint32_t linkCount(const ShellItem& item)
    {
        const auto details = files_.details(item.path(), Links::asThemselves);
        return details ? details->links : 0;
    }

private:
    bool asksForNetwork(const ShellItem& item)
    {
        const auto volume = files_.volumeFacts(item.path());
        return volume && volume->network;
    }

    FileSystem& files_;
    std::map<std::uint64_t, bool> networks_;  // by volume
};

// The first line as a complaint, the others as they are; then the groups.
ExitCode refuseLostGroups(const SavedScan& scan, OutputFormat format, const Console& console)
{
    const std::vector<std::string> lines = splitWords(filledText(TextId::groupsWhollyMarked), '\n');
    complain(console, lines.front());
    for (std::size_t line = 1; line < lines.size(); ++line)
        console.err << lines[line] << '\n';
    console.err << filledText(TextId::waysOutOfLoss) << '\n';
    writeLostGroups(scan.results, console.err);
    if (format == OutputFormat::json)
        writeLostGroupsJson(scan.results, console.out);
    return ExitCode::usage;
}

ExitCode print(const DryRun& run, OutputFormat format, const Console& console)
{
    if (format == OutputFormat::json) {
        writePlanJson(run, console.out);
        return ExitCode::done;
    }
    writePlanText(run, console.out);
    console.out.flush();
    writePlanSums(run, console.err);
    return ExitCode::done;
}

ExitCode plan(const CleanRequest& request, SavedScan& scan, Platform& platform, const Console& console)
{
    if (!request.sort.empty() &&
        !sortResults(scan.results, request.sort, GroupedOrder::yes, scan.properties.source, console.cancel))
        return stopCancelled(console);
    const auto preview = applyMarks(scan.results, request.marks, {scan.properties.source, platform.paths()});
    if (!preview)
        return refuse(console, preview.error().detail);
    if (preview->groupsLost > 0)
        return refuseLostGroups(scan, request.format, console);
    DiskFacts disk(platform.files());
    const CleanupFacts facts{*scan.definition, platform.paths(),
                             [&](const ShellItem& item) { return disk.onNetwork(item); },
                             [&](const ShellItem& item) { return disk.linkCount(item); }};
    auto planned = planCleanup(scan.results, request.action, facts);
    if (!planned)
        return refuse(console, planned.error().detail);
    const auto changed = leaveChangedAlone(*planned, scan.results, facts, platform.files(), console.cancel);
    if (!changed || console.cancel.cancelled())
        return stopCancelled(console);
    const ExitCode printed = print({scan.results, *preview, *planned}, request.format, console);
    return std::max(printed, *changed > 0 ? ExitCode::incomplete : ExitCode::done);
}

ExitCode clean(const CLI::App& app, const RawClean& raw, Platform& platform, const Console& console)
{
    ExitCode code = ExitCode::done;
    const auto scan = openSavedScan(raw.files.front(), raw.settings, platform, console, code);
    if (!scan)
        return code;
    if (!scan->definition)
        return refuse(console, filledText(TextId::noDefinition, {scan->name}));
    const auto request = makeCleanRequest(app, raw, *scan, platform);
    if (!request)
        return refuse(console, request.error().detail);
    code = plan(*request, *scan, platform, console);
    return std::max(code, tellMissing(*scan, console));
}

}  // namespace

ExitCode cleanVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::cleanAbout), "clean");
    app.footer(footerText({TextId::cleanNotes, examples, {}}));
    RawClean raw;
    addCleanOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    if (const auto message = notOneFile("clean", raw.files))
        return refuse(console, *message);
    if (!raw.dryRun)
        return refuse(console, filledText(TextId::cleanNotYet));
    return clean(app, raw, platform, console);
}

}  // namespace kelvane
