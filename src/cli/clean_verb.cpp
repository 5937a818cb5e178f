#include <CLI/CLI.hpp>

#include "app/cleanup_bookkeeping.h"
#include "app/engine_settings.h"
#include "base/filled_text.h"
#include "base/words.h"
#include "cleanup/disk_facts.h"
#include "cleanup/plan_check.h"
#include "cleanup/trashless.h"
#include "cli/arguments.h"
#include "cli/clean_options.h"
#include "cli/clean_report.h"
#include "cli/clean_run.h"
#include "cli/cleanup_prompts.h"
#include "cli/settings_in_force.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::string_view cleanExamples =
    "  kelvane-cli clean copies.ikvs --keep oldest --dry-run\n"
    "  kelvane-cli clean copies.ikvs --keep oldest\n"
    "  kelvane-cli clean copies.ikvs --prefer ~/Pictures --keep newest --keep biggest --log clean.log\n"
    "  kelvane-cli clean copies.ikvs --keep first --sort path --protect ~/Archive --link auto\n"
    "  kelvane-cli clean copies.ikvs --keep-under ~/Music --link hard --yes --json\n";

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

ExitCode print(const PlanReport& report, OutputFormat format, const Console& console)
{
    tellTrashless(report.withoutTrash, console);
    if (format == OutputFormat::json) {
        writePlanJson(report, console.out);
        return ExitCode::done;
    }
    writePlanText(report, console.out);
    console.out.flush();
    console.err << (report.plan.commands.empty() ? "" : "\n");
    writePlanSums(report, console.err);
    console.err << filledText(TextId::wasDryRun) << '\n';
    return ExitCode::done;
}

ExitCode dryRun(const MarkedScan& marked, const CleanRequest& request, Platform& platform, const Console& console)
{
    const ResultsModel& results = marked.scan.results;
    DiskFacts disk(platform.files(), platform.heldFiles());
    const CleanupFacts facts = disk.facts(*marked.scan.definition, platform.paths());
    auto plan = planCleanup(results, request.action, facts);
    if (!plan)
        return refuse(console, plan.error().detail);
    const auto changed = leaveChangedAlone(*plan, results, facts, platform.files(), console.cancel);
    if (!changed || console.cancel.cancelled())
        return stopCancelled(console);
    const auto volumes = volumesWithoutTrash(*plan, results, platform.fileOperations(), platform.files());
    leaveTrashlessAlone(*plan, volumes, results, facts);
    const ExitCode printed =
        print({results, marked.preview, *plan, volumes, request.compareInFull}, request.format, console);
    return std::max(printed, *changed > 0 || !volumes.empty() ? ExitCode::incomplete : ExitCode::done);
}

// Nothing is marked, and the reason told, where the verb is over with `code`.
std::optional<MarkingPreview> mark(SavedScan& scan, const CleanRequest& request, Platform& platform,
                                   const Console& console, ExitCode& code)
{
    if (!request.sort.empty() &&
        !sortResults(scan.results, request.sort, GroupedOrder::yes, scan.properties.source, console.cancel)) {
        code = stopCancelled(console);
        return std::nullopt;
    }
    const auto preview = applyMarks(scan.results, request.marks, {scan.properties.source, platform.paths()});
    if (preview && preview->groupsLost == 0)
        return *preview;
    code = preview ? refuseLostGroups(scan, request.format, console) : refuse(console, preview.error().detail);
    return std::nullopt;
}

ExitCode clean(const CLI::App& app, const RawClean& raw, Platform& platform, const Console& console)
{
    const auto settings = settingsInForce(raw.settings, NamedSettings::mustExist, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    EngineOptions options;
    applyEngineNumbers((*settings)->settings(), options);
    ExitCode code = ExitCode::done;
    const auto scan = openSavedScan(raw.files.front(), options, platform, console, code);
    if (!scan)
        return code;
    if (!scan->definition)
        return refuse(console, filledText(TextId::noDefinition, {scan->name}));
    auto request = makeCleanRequest(app, raw, *scan, platform);
    if (!request)
        return refuse(console, request.error().detail);
    const CleanupOptions wanted = cleanupOptionsFrom((*settings)->settings());
    request->action.noHardLinks = wanted.noHardLinks;
    request->action.noSymbolicLinks = wanted.noSymbolicLinks;
    const auto preview = mark(*scan, *request, platform, console, code);
    if (!preview)
        return code;
    const MarkedScan marked{*scan, options, *preview};
    code = request->dryRun ? dryRun(marked, *request, platform, console)
                           : carryOut(marked, *request, **settings, platform, console);
    return std::max(code, tellMissing(*scan, console));
}

}  // namespace

ExitCode cleanVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::cleanAbout), "clean");
    app.footer(footerText({TextId::cleanNotes, cleanExamples, {}}));
    RawClean raw;
    addCleanOptions(app, raw);
    if (const auto over = parseArguments(app, "FILE", arguments, console))
        return *over;
    if (const auto message = notOneFile("clean", raw.files))
        return refuse(console, *message);
    return clean(app, raw, platform, console);
}

}  // namespace kelvane
