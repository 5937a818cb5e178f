// What one worker does with one partition.
#pragma once

#include <cstdint>
#include <span>
#include <tuple>
#include <vector>

#include "engine/candidate_sort.h"
#include "engine/content_classes.h"
#include "engine/neighbour_links.h"

namespace kelvane {

// Splits partitions by contents and links what is equal. One a worker.
class PartClassifier {
public:
    PartClassifier(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel,
                   const SortedCandidates& sorted, NeighbourLinks& links, const ContentBudget& budget,
                   ContentClassifier::Skipped skipped);

    // False when cancelled; the partition is then not linked.
    [[nodiscard]] bool classify(std::span<const std::uint32_t> part);

    [[nodiscard]] std::uint64_t bytesRead() const { return classifier_.bytesRead(); }

private:
    struct Name {
        FileIdentity identity;
        std::uint32_t member = 0;  // index into the partition
        friend bool operator<(const Name& a, const Name& b)
        {
            return std::tie(a.identity.volume, a.identity.index, a.member) <
                   std::tie(b.identity.volume, b.identity.index, b.member);
        }
    };

    [[nodiscard]] const ShellItem& item(std::uint32_t position) const { return sorted_.at(position).item(); }
    [[nodiscard]] bool isEquivalence(std::span<const std::uint32_t> part) const;
    [[nodiscard]] std::uint32_t chooseRepresentatives(std::span<const std::uint32_t> part);
    [[nodiscard]] bool classifyRepresentatives(FileSize size);

    const SortedCandidates& sorted_;
    const EngineOptions& options_;
    const CancelFlag& cancel_;
    NeighbourLinks& links_;
    ContentClassifier classifier_;
    std::vector<Name> names_;
    std::vector<std::uint32_t> representativeOf_;  // of each member: which physical file it is
    std::vector<const ShellItem*> representatives_;
    std::vector<std::uint32_t> classes_;  // of the representatives
};

}  // namespace kelvane
