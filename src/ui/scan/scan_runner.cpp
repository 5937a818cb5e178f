#include "ui/scan/scan_runner.h"

#include <utility>

#include "app/kept_scans.h"
#include "app/scan_notes.h"
#include "base/desktop_texts/scan.h"
#include "base/random.h"
#include "engine/ignored_pairs.h"
#include "engine/scan_figures.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/scan/order_check.h"
#include "ui/scan/scan_watcher.h"

namespace kelvane {
namespace {

constexpr std::uint64_t fewestToCompare = 2;

using Reports = QPointer<ScanReports>;

void tellEnd(Workbench& bench, const Reports& reports, ScanOutcome outcome)
{
    bench.toMain([reports, outcome = std::move(outcome)](WindowLink&) {
        if (reports)
            Q_EMIT reports->ended(outcome);
    });
}

void refuse(Workbench& bench, const Reports& reports, const QString& problem)
{
    ScanOutcome outcome;
    outcome.refused = true;
    outcome.problem = problem;
    tellEnd(bench, reports, std::move(outcome));
}

// The definition that the next scan starts with, and the front of the history.
void remember(const Desktop& desktop, const CScanNode& definition, FileTime now)
{
    desktop.change([&](Settings& settings) {
        settings.lastScan = definition;
        settings.lastScanFlags = definition.flags;
        rememberScan(settings, definition, now);
    });
}

// The list is empty and has its columns from here on.
void begin(Workbench& bench, ListSession& session, ScanCriteria criteria, const Reports& reports)
{
    session.definition = criteria.definition;
    session.columns = scanColumns(criteria, session.access.catalogue);
    session.criteria = std::move(criteria);
    bench.toMain([reports](WindowLink& link) {
        Q_EMIT link.listBegan();
        if (reports)
            Q_EMIT reports->began();
    });
}

// What took no part and why, in words: without them a search by what no file has looks like one that found nothing.
QStringList notesOn(const ScanReport& report, const ListSession& session)
{
    QStringList lines;
    for (const DroppedRoot& root : report.roots.dropped)
        lines.append(shown(desktop_text::rootLeftOut, {droppedText(root, session.settings).toStdString()}));
    const std::uint64_t skipped = report.walk.skipped + report.grouping.skipped;
    if (skipped > 0)
        lines.append(toQt(countedText(skipped, TextId::oneNotRead, TextId::manyNotRead)));
    for (const std::string& line : leftOutNotes(report, *session.criteria))
        lines.append(toQt(line));
    for (const std::string& line : session.access.takeComplaints())
        lines.append(toQt(line));
    return lines;
}

// The first of what could not be read: folders of the definition, then what the scan came upon.
QString notRead(const ScanReport& report, const ListSession& session, const QStringList& skipped)
{
    QStringList lines;
    for (const DroppedRoot& root : report.roots.dropped)
        if (root.problem == RootProblem::notReadable || root.problem == RootProblem::notFound)
            lines.append(droppedText(root, session.settings));
    lines += skipped;
    return lines.join(u'\n');
}

void log(Workbench& bench, const QStringList& lines, const Reports& reports)
{
    if (lines.isEmpty())
        return;
    bench.toMain([reports, lines](WindowLink&) {
        if (reports)
            Q_EMIT reports->logged(lines);
    });
}

ScanOutcome outcomeOf(const ScanReport& report, const ResultsModel& results)
{
    ScanOutcome outcome;
    outcome.cancelled = report.rows < 0;
    outcome.rows = report.rows;
    outcome.groups = results.groupCount();
    outcome.trivial = report.candidates < fewestToCompare;
    return outcome;
}

ScanReport scanInto(Workbench& bench, ListSession& session, ScanWatcher& watcher)
{
    Platform& platform = bench.platform();
    seedRandom(platform.clock().ticks());
    const IgnoredPairs ignored(session.settings.ignoredGroups);
    const ScanPorts ports{platform.shell(),           platform.paths(), session.access.source, platform.clock(),
                          platform.priority(),        watcher,          bench.cancel(),        bench.results(),
                          &session.similar.content(), &ignored};
    return runScan(*session.criteria, ports);
}

}  // namespace

EngineOptions optionsFor(const ScanOrder& order, const Settings& settings, const Desktop& desktop,
                         std::string* complaint)
{
    EngineOptions options = desktop.engineOptions(settings, complaint);
    constexpr std::uint32_t archives = option_flag::enterVirtualFolders;
    options.flags = order.archives ? options.flags | archives : options.flags & ~archives;
    options.exhaustive = order.exhaustive;
    return options;
}

void runOrderedScan(Workbench& bench, const ScanOrder& order, Reports reports, std::shared_ptr<PauseSwitch> pause)
{
    const auto running = bench.begin(Job::scanning);
    if (!running)
        return refuse(bench, reports, shown(desktop_text::scanBusy));
    const Settings settings = bench.desktop().settings();
    std::string complaint;
    const EngineOptions options = optionsFor(order, settings, bench.desktop(), &complaint);
    if (const QString problem = checkOrder(bench, order).problem(); !problem.isEmpty())
        return refuse(bench, reports, problem);
    remember(bench.desktop(), order.definition, bench.platform().clock().now());
    ListSession& session = bench.beginList(settings, options);
    auto criteria = makeCriteria(order.definition, session.options, session.access.catalogue);
    if (!criteria)
        return refuse(bench, reports, toQt(criteria.error().detail));
    begin(bench, session, *std::move(criteria), reports);
    if (!complaint.empty())
        log(bench, {toQt(complaint)}, reports);
    ScanWatcher watcher(bench, reports, *pause);
    const ScanReport report = scanInto(bench, session, watcher);
    watcher.flush();
    session.figures = figuresOf(report, session.options);
    log(bench, notesOn(report, session), reports);
    ScanOutcome outcome = outcomeOf(report, bench.results());
    outcome.notRead = notRead(report, session, watcher.firstSkipped());
    tellEnd(bench, reports, std::move(outcome));
}

}  // namespace kelvane
