#include "engine/scan_driver.h"

#include <algorithm>

#include "base/text_table.h"
#include "engine/candidate_preparation.h"

namespace kelvane {
namespace {

constexpr std::uint64_t longScanMs = 180'000;

// The digits of a number, with zeros in front up to a width.
std::u16string digits(std::uint64_t number, std::size_t width = 1)
{
    const std::string text = std::to_string(number);
    return std::u16string(width > text.size() ? width - text.size() : 0, u'0') +
           std::u16string(text.begin(), text.end());
}

// Replaces the first place of a mark in the text.
void fill(std::u16string& text, std::u16string_view mark, std::u16string_view value)
{
    if (const std::size_t at = text.find(mark); at != std::u16string::npos)
        text.replace(at, mark.size(), value);
}

void drop(std::vector<PropRef>& columns, const PropRef& column)
{
    columns.erase(std::remove(columns.begin(), columns.end(), column), columns.end());
}

bool anyRootIsContainer(const std::vector<std::string>& roots, const PathRules& rules)
{
    return roots.size() > 1 &&
           std::any_of(roots.begin(), roots.end(), [&](const std::string& root) { return rules.isComputerRoot(root); });
}

RootList prepareRoots(const ScanCriteria& criteria, const ScanPorts& ports)
{
    RootListInput input;
    input.list = criteria.definition.roots;
    input.protect = criteria.has(scan_flag::protect);
    input.subfolders = criteria.has(scan_flag::subfolders);
    input.fromContainer = anyRootIsContainer(ports.paths.splitRoots(input.list), ports.paths);
    return normaliseRoots(input, ports.paths, ports.shell);
}

std::uint64_t totalBytes(const CandidateList& candidates)
{
    std::uint64_t total = 0;
    for (const Candidate& file : candidates)
        total += file.item().info().size.bytes;
    return total;
}

// Phase 1. False when cancelled.
bool gather(const ScanCriteria& criteria, const ScanPorts& ports, CandidateList& candidates, ScanReport& report)
{
    CandidatePreparation preparation(criteria, ports.properties, ports.similar);
    const WalkPorts walkPorts{ports.shell,    ports.paths,  ports.properties, ports.clock,
                              ports.observer, ports.cancel, ports.similar,    &preparation};
    const std::uint64_t start = ports.clock.ticks();
    Walker walker(criteria, walkPorts, candidates);
    bool finished = true;
    for (std::size_t i = 0; finished && i < report.roots.roots.size(); ++i)
        finished = walker.walk(report.roots.roots[i]) == WalkResult::done;
    report.walk = walker.stats();
    finished = finished && preparation.settle(candidates, ports.clock, ports.observer, ports.cancel, report.walk);
    report.walkSeconds = static_cast<double>(ports.clock.ticks() - start) / 1000.0;
    report.candidates = candidates.size();
    report.candidateBytes = totalBytes(candidates);
    return finished && !ports.cancel.cancelled();
}

void runPhases(const ScanCriteria& criteria, const ScanPorts& ports, ScanReport& report)
{
    report.roots = prepareRoots(criteria, ports);
    CandidateList candidates;
    if (!gather(criteria, ports, candidates, report)) {
        report.rows = -1;
        return;
    }
    const GroupingPorts groupingPorts{ports.shell,  ports.paths, ports.properties, ports.clock,  ports.observer,
                                      ports.cancel, ports.sink,  ports.similar,    ports.ignored};
    report.rows = groupCandidates(criteria, candidates, groupingPorts, {}, report.grouping);
}

void tellOutcome(std::int64_t rows, std::uint64_t elapsedMs, ScanObserver& observer)
{
    if (rows < 0)
        return;
    if (rows == 0) {
        observer.nothingFound(text(TextId::nothingFound));
        return;
    }
    observer.status(timingText(static_cast<std::uint64_t>(rows), elapsedMs));
    if (elapsedMs >= longScanMs)
        observer.sound(ScanObserver::Sound::information);
}

}  // namespace

std::vector<PropRef> scanColumns(const ScanCriteria& criteria, const PropertyCatalogue& catalogue)
{
    std::vector<PropRef> columns = criteria.properties;
    const auto category = static_cast<std::size_t>(criteria.category());
    if (category < criteria.options.extraColumns.size()) {
        for (const PropRef& extra : catalogue.parseList(criteria.options.extraColumns[category]))
            if (std::find(columns.begin(), columns.end(), extra) == columns.end())
                columns.push_back(extra);
    }
    const auto has = [&](const PropRef& column) {
        return column && std::find(columns.begin(), columns.end(), column) != columns.end();
    };
    const PropRef width = catalogue.byName("System.Image.HorizontalSize");
    if (criteria.category() == Category::images && has(catalogue.byName("System.Image.Dimensions")) && has(width))
        drop(columns, width);
    return columns;
}

ScanReport runScan(const ScanCriteria& criteria, const ScanPorts& ports)
{
    ScanReport report;
    if ((criteria.options.noticesSeen & notice_flag::firstScanShown) == 0)
        ports.observer.notice(text(TextId::firstScanNotice));
    report.columns = scanColumns(criteria, ports.properties.catalogue());
    ports.observer.started();
    const std::uint64_t start = ports.clock.ticks();
    const auto phases = [&] { runPhases(criteria, ports, report); };
    if (criteria.options.has(option_flag::lowPriority))
        ports.priority.runLowered(phases);
    else
        phases();
    const std::uint64_t elapsed = ports.clock.ticks() - start;
    report.seconds = static_cast<double>(elapsed) / 1000.0;
    ports.observer.ended();
    tellOutcome(report.rows, elapsed, ports.observer);
    return report;
}

std::u16string timingText(std::uint64_t rows, std::uint64_t elapsedMs)
{
    const std::uint64_t seconds = elapsedMs / 1000;
    std::u16string line(text(TextId::duplicatesFound));
    fill(line, u"%d", digits(rows));
    fill(line, u"%d", digits(seconds / 60));
    fill(line, u"%02d", digits(seconds % 60, 2));
    return line;
}

}  // namespace kelvane
