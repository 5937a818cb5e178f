#include "engine/grouping.h"

#include "base/text_table.h"
#include "engine/candidate_preparation.h"
#include "engine/candidate_sort.h"
#include "engine/classified_ahead.h"
#include "engine/group_walk.h"

namespace kelvane {
namespace {

double secondsSince(std::uint64_t start, const Clock& clock)
{
    return static_cast<double>(clock.ticks() - start) / 1000.0;
}

std::optional<SortedCandidates> sortPhase(const ScanCriteria& criteria, CandidateList& candidates,
                                          const GroupingPorts& ports, GroupingStats& stats)
{
    ports.observer.caption(text(TextId::phaseSorting));
    const std::uint64_t start = ports.clock.ticks();
    std::optional<SortedCandidates> sorted = sortCandidates(criteria, candidates, ports);
    stats.sortSeconds = secondsSince(start, ports.clock);
    if (sorted)
        ports.observer.progress({ScanPhase::sorting, sorted->size(), sorted->size(), 0, 0});
    return sorted;
}

std::unique_ptr<Neighbours> findNeighbours(const ScanCriteria& criteria, const SortedCandidates& sorted,
                                           const GroupingPorts& ports, const GroupingMode& mode, GroupingStats& stats)
{
    if (criteria.exact() && criteria.options.classifyAhead)
        return classifyAhead(criteria, sorted, ports, mode.budget != nullptr ? *mode.budget : AheadBudget{}, stats);
    if (isDescribed(criteria, ports.similar) && criteria.options.classifyAhead) {
        if (auto narrowed = ports.similar->narrow(criteria, sorted, ports.cancel))
            return narrowed;
    }
    return std::make_unique<AllLater>(sorted);
}

// Earlier results bring no values or descriptors with them. False when cancelled.
bool prepareAgain(const ScanCriteria& criteria, CandidateList& candidates, const GroupingPorts& ports)
{
    CandidatePreparation preparation(criteria, ports.properties, ports.similar);
    if (!preparation.needed())
        return true;
    for (Candidate& file : candidates)
        preparation.begin(file);
    WalkStats unused;
    return preparation.settle(candidates, ports.clock, ports.observer, ports.cancel, unused);
}

}  // namespace

std::int64_t groupCandidates(const ScanCriteria& criteria, CandidateList& candidates, const GroupingPorts& ports,
                             const GroupingMode& mode, GroupingStats& stats)
{
    stats = {};
    if (mode.recheck && !prepareAgain(criteria, candidates, ports))
        return -1;
    prepareCandidates(criteria, candidates, ports.properties, mode);
    if (candidates.size() < 2)
        return 0;
    const std::optional<SortedCandidates> sorted = sortPhase(criteria, candidates, ports, stats);
    if (!sorted)
        return -1;

    ports.observer.caption(text(TextId::phaseComparing));
    const std::uint64_t start = ports.clock.ticks();
    const std::unique_ptr<Neighbours> neighbours = findNeighbours(criteria, *sorted, ports, mode, stats);
    const bool finished = neighbours && GroupWalk(criteria, ports, mode, *sorted, stats).run(*neighbours);
    stats.compareSeconds = secondsSince(start, ports.clock);
    stats.duplicates = stats.grouped > stats.groups ? stats.grouped - stats.groups : 0;
    return finished ? static_cast<std::int64_t>(stats.grouped) : -1;
}

}  // namespace kelvane
