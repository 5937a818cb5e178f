// Phase 3: from sorted candidates to groups.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "engine/candidate_sort.h"
#include "engine/grouping.h"
#include "engine/ignored_split.h"
#include "engine/known_files.h"
#include "engine/matcher.h"
#include "engine/neighbours.h"
#include "engine/progress_pacer.h"

namespace kelvane {

// Each candidate in sorted order seeds a group of the later ones that match: every one is compared with the one found
// just before it, so that a chain of near copies is one group. Further names of one file are excluded on the way.
class GroupWalk {
public:
    GroupWalk(const ScanCriteria& criteria, const GroupingPorts& ports, const GroupingMode& mode,
              const SortedCandidates& sorted, GroupingStats& stats);

    // Hands the groups over. False when cancelled; the group in work is then not handed over.
    [[nodiscard]] bool run(Neighbours& neighbours);

private:
    // These answer false when cancelled.
    [[nodiscard]] bool seedGroup(std::uint32_t seed);
    [[nodiscard]] bool collect(std::uint32_t seed);
    [[nodiscard]] MatchResult compare(std::uint32_t a, std::uint32_t b);
    // Whether the file is compared with from now on; a further name of a file that is in the group is not.
    [[nodiscard]] bool accept(std::uint32_t candidate);
    [[nodiscard]] bool wanted(std::span<const std::uint32_t> group) const;
    [[nodiscard]] bool handOver(std::uint32_t seed);
    // Nothing when cancelled.
    [[nodiscard]] std::optional<std::vector<std::vector<std::uint32_t>>> parted(std::vector<std::uint32_t> group);
    void handOver(std::span<const std::uint32_t> group, std::uint32_t flags);
    void handOver(std::uint32_t position, std::uint32_t flags);
    [[nodiscard]] bool approximateBySize(const ShellItem& seed) const;
    void report(std::uint32_t position);

    const ScanCriteria& criteria_;
    const GroupingPorts& ports_;
    const GroupingMode& mode_;
    const SortedCandidates& sorted_;
    GroupingStats& stats_;
    ContentComparer contents_;
    IgnoredSplitter ignored_;
    Matcher matcher_;
    ProgressPacer pacer_;
    std::function<void()> whileWaiting_;  // reports where the walk stands
    Neighbours* neighbours_ = nullptr;
    std::vector<bool> used_;  // visited or excluded, by position
    std::vector<std::uint32_t> members_;
    std::uint32_t seed_ = 0;
    std::uint32_t reference_ = 0;
    std::pair<std::uint32_t, std::uint32_t> compared_;  // the pair that the matcher has in hand
    // By position, of searches for similar contents: the score by which each file joined its group.
    std::vector<std::optional<std::int32_t>> scores_;
    bool approximate_ = false;
    KnownFiles known_;
};

}  // namespace kelvane
