#include "cli/saved_scan.h"

#include <algorithm>
#include <span>

#include "app/listed_results.h"
#include "base/filled_text.h"
#include "cli/problems.h"
#include "cli/settings_in_force.h"
#include "results/result_sort.h"

namespace kelvane {
namespace {

constexpr std::size_t mostNamed = 10;  // of the files that are missing

void takeCriteria(SavedScan& scan, const CScanNode& definition, const EngineOptions& options)
{
    const EngineOptions asScanned = optionsWithArchives(options, scan.figures.archives);
    if (auto criteria = makeCriteria(definition, asScanned, scan.properties.catalogue))
        scan.criteria = std::move(*criteria);
}

void take(SavedScan& scan, LoadedResults& loaded, Platform& platform, const EngineOptions& options)
{
    StoredResults& stored = loaded.results;
    scan.missing = loaded.missing;
    scan.missingFiles = std::move(loaded.missingFiles);
    scan.columns = std::move(stored.columns);
    if (stored.figures)
        scan.figures = std::move(*stored.figures);
    if (stored.definition) {
        if (!stored.figures)
            scan.figures.roots = platform.paths().splitRoots(stored.definition->roots);
        takeCriteria(scan, *stored.definition, options);
        scan.definition = std::move(stored.definition);
    }
    addRows(scan.results, std::move(stored.rows));
}

std::string failureText(const std::string& typed, const Error& error)
{
    return typed + ": " + filledText(TextId::contentsCorrupt) + ": " + errorText(error);
}

}  // namespace

SavedScan::SavedScan(std::string typed, Platform& platform, const EngineOptions& options)
    : name(std::move(typed)), properties(platform, options)
{
}

std::unique_ptr<SavedScan> openSavedScan(const std::string& typed, const std::string& settings, Platform& platform,
                                         const Console& console, ExitCode& code, AllMissing allMissing)
{
    const auto options = engineSettings(settings, platform, console);
    if (!options) {
        code = refuse(console, options.error().detail);
        return nullptr;
    }
    return openSavedScan(typed, *options, platform, console, code, allMissing);
}

std::unique_ptr<SavedScan> openSavedScan(const std::string& typed, const EngineOptions& options, Platform& platform,
                                         const Console& console, ExitCode& code, AllMissing allMissing)
{
    auto scan = std::make_unique<SavedScan>(typed, platform, options);
    complainOf(scan->properties.plugins->takeComplaints(), console);
    auto loaded =
        loadResults(namedFile(typed), platform.shell(), scan->properties.catalogue, console.cancel, allMissing);
    if (!loaded) {
        code =
            console.cancel.cancelled() ? stopCancelled(console) : refuse(console, failureText(typed, loaded.error()));
        return nullptr;
    }
    take(*scan, *loaded, platform, options);
    // A list that was saved while it was sorted across groups.
    if (!scan->results.isGrouped() &&
        !sortResults(scan->results, {}, GroupedOrder::yes, scan->properties.source, console.cancel)) {
        code = stopCancelled(console);
        return nullptr;
    }
    return scan;
}

ExitCode tellMissing(const SavedScan& scan, const Console& console)
{
    if (scan.missing == 0)
        return ExitCode::done;
    const std::uint64_t all = std::uint64_t{scan.missing} + scan.results.itemCount();
    complain(console, scan.name + ": " + filledText(TextId::itemsNotLocated) + " (" +
                          filledText(TextId::partOf, {std::to_string(scan.missing), std::to_string(all)}) + ')');
    const std::size_t named = std::min(scan.missingFiles.size(), mostNamed);
    for (const std::string& path : std::span(scan.missingFiles).first(named))
        complain(console, filledText(TextId::notLocated, {path}));
    if (named < scan.missingFiles.size())
        complain(console, filledText(TextId::notLocated, {"..."}));
    return ExitCode::incomplete;
}

}  // namespace kelvane
