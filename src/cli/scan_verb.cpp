#include <CLI/CLI.hpp>
#include <algorithm>

#include "app/descriptor_cache.h"
#include "app/property_access.h"
#include "app/scan_notes.h"
#include "app/similar_search.h"
#include "base/filled_text.h"
#include "base/random.h"
#include "cli/arguments.h"
#include "cli/problems.h"
#include "cli/report.h"
#include "cli/requested_criteria.h"
#include "cli/scan_save.h"
#include "cli/scan_watch.h"
#include "cli/score_keeper.h"
#include "cli/settings_in_force.h"
#include "cli/settled_runs.h"
#include "cli/verbs.h"

namespace kelvane {
namespace {

constexpr std::string_view scanExamples = "  kelvane-cli scan ~/Pictures ~/Backup\n"
                                          "  kelvane-cli scan --masks 'jpg,png' --min-size 1M --json . > copies.json\n"
                                          "  kelvane-cli scan --match System.FileName,System.Size ~/Documents\n"
                                          "  kelvane-cli scan --save copies.ikvs ~/Music\n"
                                          "  kelvane-cli scan --category audio --similar 90 --verbose ~/Music\n"
                                          "  kelvane-cli scan --no-protect --format null /usr/share | tr '\\0' '\\n'\n";

// Names every root that is not walked. True when one of them is a fault; a root inside another one is none.
bool complainOfRoots(const RootList& roots, const ScanRequest& request, const Console& console)
{
    bool fault = false;
    for (const DroppedRoot& dropped : roots.dropped) {
        const bool harmless = dropped.problem == RootProblem::insideOther;
        if (harmless && !request.verbose)
            continue;
        fault = fault || !harmless;
        complain(console, dropped.root + ": " + rootProblemText(dropped));
    }
    return fault;
}

void complainOfSkipped(std::uint64_t count, const ScanWatch& watch, const ScanRequest& request, const Console& console)
{
    for (const SkippedItem& item : watch.skippedItems())
        complain(console, item.path + ": " + errorText(item.error));
    if (count == 0)
        return;
    complain(console, countedText(count, TextId::oneNotRead, TextId::manyNotRead) +
                          (request.verbose ? "" : filledText(TextId::verboseListsThem)));
}

void noteLeftOut(const ScanReport& report, const ScanCriteria& criteria, const Console& console)
{
    complainOf(leftOutNotes(report, criteria), console);
    if (const std::uint64_t pairs = report.grouping.ignoredPairs; pairs > 0)
        complain(console, countedText(pairs, TextId::oneIgnoredLeftOut, TextId::manyIgnoredLeftOut));
}

// A finished scan, for as long as it is reported.
struct ScanOutcome {
    const ScanCriteria& criteria;
    const ScanReport& report;
    ResultsModel& results;
    const PropertySource& properties;
    const ScoreKeeper& kept;
};

// Columns whose values were read for comparing anyway; where all values of a column are equal, they tell nothing.
std::vector<PropRef> shownColumns(const ScanCriteria& criteria)
{
    std::vector<PropRef> columns = criteria.exact() ? std::vector<PropRef>() : criteria.properties;
    if (criteria.similarContents() && !criteria.primaryIsFirst)
        columns.push_back(criteria.primary);
    std::erase_if(columns, [](const PropRef& column) {
        return column.has(property_flag::fromFileRecord) || column.kind() == PropKind::none ||
               column.info->type == VarType::object;
    });
    return columns;
}

// Text is for the eye, which scores and values would only distract.
ListingShape shapeFor(const ScanRequest& request, const ScanOutcome& outcome)
{
    ListingShape shape;
    if (request.format == OutputFormat::text && !request.verbose)
        return shape;
    shape.columns = outcome.kept.columns();
    shape.properties = &outcome.properties;
    shape.scores = outcome.criteria.similarContents() ? &outcome.kept.scores() : nullptr;
    return shape;
}

void print(const ScanRequest& request, const ScanOutcome& outcome, const Console& console)
{
    const OutputFormat format = request.format;
    const ScanFigures figures = figuresOf(outcome.report, outcome.criteria.options);
    const Listing listing{&outcome.criteria, figures.roots,  figures,
                          outcome.results,   console.cancel, shapeFor(request, outcome)};
    writeReport(format, listing, console.out);
    console.out.flush();
    if (format == OutputFormat::text)
        writeSummary(listing, console.err);
    if (format == OutputFormat::text && request.verbose && outcome.criteria.similarContents())
        console.err << filledText(TextId::comparedPairs, {std::to_string(figures.comparisons)}) << '\n';
}

ExitCode report(const ScanRequest& request, const ScanOutcome& outcome, const ScanWatch& watch, const Console& console)
{
    print(request, outcome, console);
    const std::uint64_t skipped = outcome.report.walk.skipped + outcome.report.grouping.skipped;
    complainOfSkipped(skipped, watch, request, console);
    noteLeftOut(outcome.report, outcome.criteria, console);
    if (request.format != OutputFormat::json && console.cancel.cancelled())
        return ExitCode::cancelled;
    return skipped > 0 || outcome.report.walk.undescribedFailed ? ExitCode::incomplete : ExitCode::done;
}

// Saved before it is printed: a reader that closes its pipe takes nothing away from the file.
ExitCode saveAndReport(const ScanRequest& request, const SaveTarget& target, const ScanOutcome& outcome,
                       const ScanWatch& watch, Platform& platform, const Console& console)
{
    const RootList& roots = outcome.report.roots;
    const bool rootFault = complainOfRoots(roots, request, console);
    if (roots.roots.empty())
        return ExitCode::usage;
    if (outcome.report.rows < 0)
        return stopCancelled(console);
    const ExitCode saved = saveScan(target, outcome.criteria, outcome.report, outcome.results, platform, console);
    return std::max(
        {rootFault ? ExitCode::incomplete : ExitCode::done, saved, report(request, outcome, watch, console)});
}

// What a scan was asked for, all of it checked.
struct ScanJob {
    const ScanRequest& request;
    const SaveTarget& target;
    const Settings& settings;
    const IgnoredPairs& ignored;
};

ExitCode scan(const ScanJob& job, Platform& platform, const Console& console)
{
    const ScanRequest& request = job.request;
    seedRandom(request.seed.value_or(platform.clock().ticks()));
    DescriptorCache cache(request.useCache, job.settings, platform.runCaches());
    const PropertyAccess properties(platform, request.options, &cache, &console.cancel);
    complainOf(properties.plugins->takeComplaints(), console);
    SimilarSearch similar(properties, ProbeNumbers::perPair, request.options.threads, platform);
    const auto criteria = requestedCriteria(request, properties.catalogue, similar.content());
    if (!criteria)
        return refuse(console, criteria.error().detail);
    settleRuns(platform, console);
    ResultsModel results;
    ScoreKeeper keeper(results, shownColumns(*criteria));
    ScanWatch watch(console, platform.clock(), request);
    const ScanPorts ports{
        platform.shell(), platform.paths(), properties.source,  platform.clock(), platform.priority(), watch,
        console.cancel,   keeper,           &similar.content(), &job.ignored};
    const ScanReport scanned = runScan(*criteria, ports);
    watch.finish();
    const ScanOutcome outcome{*criteria, scanned, results, properties.source, keeper};
    const ExitCode code = saveAndReport(request, job.target, outcome, watch, platform, console);
    complainOf(properties.takeComplaints(), console);
    return code;
}

void addSaveOptions(CLI::App& app, SaveTarget& target)
{
    const std::string group = filledText(TextId::groupOutput);
    app.add_option("--save", target.file, filledText(TextId::helpSave))
        ->check(notEmpty)
        ->type_name("FILE")
        ->take_last()
        ->group(group);
    app.add_flag("--overwrite", target.overwrite, filledText(TextId::helpSaveOverwrite))->group(group);
}

}  // namespace

ExitCode scanVerb(const Arguments& arguments, Platform& platform, const Console& console)
{
    CLI::App app(filledText(TextId::scanAbout), "scan");
    app.footer(footerText({TextId::scanNotes, scanExamples, TextId::similarNotes}));
    std::vector<std::string> roots;
    app.add_option("ROOT", roots, filledText(TextId::scanRootHelp))->type_name("");
    RawOptions raw;
    addOptions(app, raw);
    bool withIgnored = false;
    app.add_flag("--with-ignored", withIgnored, filledText(TextId::helpWithIgnored))
        ->group(filledText(TextId::groupMatch));
    SaveTarget target;
    addSaveOptions(app, target);
    if (const auto over = parseArguments(app, "ROOT...", arguments, console))
        return *over;
    if (roots.empty()) {
        return refuse(console, filledText(TextId::scanNeedsFolder) + helpHint("scan"));
    }
    if (std::find(roots.begin(), roots.end(), "") != roots.end())
        return refuse(console, filledText(TextId::emptyRoot));
    const auto settings = scanSettings(raw.settings, platform, console);
    if (!settings)
        return refuse(console, settings.error().detail);
    const auto request = makeRequest(raw, roots, platform.paths(), settings->options);
    if (!request)
        return refuse(console, request.error().detail);
    const IgnoredPairs ignored(withIgnored ? std::span<const IgnoredGroup>{} : settings->settings.ignoredGroups);
    if (const Status free = checkTarget(target, platform); !free)
        return refuse(console, free.error().detail);
    return scan({*request, target, settings->settings, ignored}, platform, console);
}

}  // namespace kelvane
