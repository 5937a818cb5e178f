#include "engine/part_classifier.h"

#include <algorithm>

#include "engine/same_file.h"

namespace kelvane {

PartClassifier::PartClassifier(ShellNamespace& shell, const EngineOptions& options, const CancelFlag& cancel,
                               const SortedCandidates& sorted, NeighbourLinks& links, const ContentBudget& budget,
                               ContentClassifier::Skipped skipped)
    : sorted_(sorted),
      options_(options),
      cancel_(cancel),
      links_(links),
      classifier_(shell, options, cancel, budget, std::move(skipped))
{
}

bool PartClassifier::classify(std::span<const std::uint32_t> part)
{
    if (cancel_.cancelled())
        return false;
    if (!isEquivalence(part)) {
        links_.linkAll(part, false);
        return true;
    }
    const FileSize size = item(part[0]).info().size;
    const std::uint32_t files = chooseRepresentatives(part);
    if (files == 1 || size.bytes == 0) {
        links_.linkAll(part, true);
        return true;
    }
    if (!classifyRepresentatives(size))
        return false;
    // A file alone in its class still has its further names for neighbours: each gets a number of its own.
    for (std::uint32_t i = 0; i < files; ++i)
        if (classes_[i] == ContentClassifier::alone)
            classes_[i] = files + i;
    for (std::uint32_t& representative : representativeOf_)
        representative = classes_[representative];
    links_.linkClasses(part, representativeOf_, 2 * files);
    return true;
}

// Reading ahead needs contents to be an equivalence. They are not where some pairs are sampled and others compared in
// full: entries of archives are sampled from half the size on, and so is a file beside an entry, but not two files.
// Such partitions (and those that a collision of hashes made) are left to comparing pairs.
bool PartClassifier::isEquivalence(std::span<const std::uint32_t> part) const
{
    const ShellItem& first = item(part[0]);
    const FileSize size = first.info().size;
    bool mixed = false;
    for (const std::uint32_t position : part) {
        if (item(position).info().size != size)
            return false;
        mixed = mixed || item(position).inFileSystem() != first.inFileSystem();
    }
    return !mixed || !isSampled(size, hugeLimit(options_.hugeFile, false));
}

// Further names of one physical file are read through one of them, the first. Files are read in the order of their
// identities, which on most file systems is nearer to their order on the disk than that of their names. Returns the
// number of physical files.
std::uint32_t PartClassifier::chooseRepresentatives(std::span<const std::uint32_t> part)
{
    names_.clear();
    for (std::uint32_t i = 0; i < part.size(); ++i) {
        const ShellItem& file = item(part[i]);
        names_.push_back({hasIdentity(file) ? file.info().identity : FileIdentity{}, i});
    }
    std::sort(names_.begin(), names_.end());
    representativeOf_.resize(part.size());
    representatives_.clear();
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const FileIdentity identity = names_[i].identity;
        if (i == 0 || !identity.known() || identity != names_[i - 1].identity)
            representatives_.push_back(&item(part[names_[i].member]));
        representativeOf_[names_[i].member] = static_cast<std::uint32_t>(representatives_.size()) - 1;
    }
    return static_cast<std::uint32_t>(representatives_.size());
}

bool PartClassifier::classifyRepresentatives(FileSize size)
{
    const FileSize limit = hugeLimit(options_.hugeFile, representatives_[0]->inFileSystem());
    classes_.resize(representatives_.size());
    return classifier_.classify(representatives_, comparedRanges(size, limit), classes_);
}

}  // namespace kelvane
