// Takes groups of duplicates apart where a person declared that files are none.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/cancel.h"
#include "engine/engine_options.h"
#include "engine/ignored_pairs.h"

namespace kelvane {

// Each member, in the order given, joins the first subgroup that holds no file it was declared apart from. What a
// declaration parts is thus in different groups, and every other file stays with as many of its group as it can.
// One thread; ports outlive it.
class IgnoredSplitter {
public:
    using Subgroup = std::vector<std::uint32_t>;  // indices of members, ascending

    // Null, or an empty set: every group stays whole, and nothing is opened.
    IgnoredSplitter(const IgnoredPairs* ignored, ShellNamespace& shell, const EngineOptions& options,
                    const CancelFlag& cancel);

    [[nodiscard]] bool isIdle() const { return ignored_ == nullptr || ignored_->empty(); }

    // The subgroups in the order of their first members, those of a single file included. Only members that share a
    // declaration are read, to see whether their contents are still the declared ones; one that cannot be read, or
    // that changed, counts as any other file. Nothing when cancelled.
    // `matches` tells of two members by their indices whether they are alike, for groups in which not every file
    // matches every other one: a member then joins only a subgroup whose last file it matches, so that the ends of a
    // chain do not stay together when its middle goes. Left out where all members match.
    using Matches = std::function<bool(std::uint32_t, std::uint32_t)>;
    [[nodiscard]] std::optional<std::vector<Subgroup>> split(std::span<const ShellItem* const> members,
                                                             const Matches& matches = nullptr);

    // Pairs that declarations kept apart so far; a pair in two declarations counts twice.
    [[nodiscard]] std::uint64_t partedPairs() const { return partedPairs_; }

private:
    // A declaration at work in the group at hand.
    struct Active {
        std::uint32_t sharing = 0;               // members of the right size that it names
        std::uint64_t parted = 0;                // of those, the ones whose contents are as declared
        std::uint32_t firstFree = 0;             // every subgroup before it holds one of its files
        std::unordered_set<std::uint32_t> used;  // subgroups from there on that do
    };

    [[nodiscard]] std::span<const IgnoredPairs::Entry> entriesOf(const ShellItem& item) const;
    void countSharing(std::span<const ShellItem* const> members);
    [[nodiscard]] std::optional<std::vector<Active*>> declarationsOf(const ShellItem& item);
    [[nodiscard]] Result<ContentDigest> digest(const ShellItem& item) const;
    [[nodiscard]] static std::uint32_t place(std::span<Active* const> declarations,
                                             const std::function<bool(std::uint32_t)>& admits);
    void countParted();

    const IgnoredPairs* ignored_;
    ShellNamespace& shell_;
    const EngineOptions& options_;
    const CancelFlag& cancel_;
    std::unordered_map<std::uint32_t, Active> active_;  // by declaration
    std::uint64_t partedPairs_ = 0;
};

}  // namespace kelvane
