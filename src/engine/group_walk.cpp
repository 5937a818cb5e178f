#include "engine/group_walk.h"

#include <algorithm>

#include "engine/compared_ranges.h"
#include "engine/same_file.h"

namespace kelvane {

GroupWalk::GroupWalk(const ScanCriteria& criteria, const GroupingPorts& ports, const GroupingMode& mode,
                     const SortedCandidates& sorted, GroupingStats& stats)
    : criteria_(criteria),
      ports_(ports),
      mode_(mode),
      sorted_(sorted),
      stats_(stats),
      contents_(ports.shell, criteria.options, ports.cancel),
      ignored_(ports.ignored, ports.shell, criteria.options, ports.cancel),
      matcher_(criteria, ports.properties, ports.shell, contents_, ports.similar),
      pacer_(ports.clock, ports.observer),
      whileWaiting_([this] {
          if (pacer_.due())
              report(seed_);
      }),
      used_(sorted.size()),
      scores_(criteria.similarContents() ? sorted.size() : 0),
      known_(ports.paths)
{
    matcher_.setContentOracle([this](const Candidate&, const Candidate&) -> std::optional<ContentResult> {
        if (neighbours_->contentsKnownEqual(reference_))
            return ContentResult::equal;
        return std::nullopt;
    });
    matcher_.setScoreOracle([this] { return neighbours_->knownScore(compared_.first, compared_.second); });
}

bool GroupWalk::run(Neighbours& neighbours)
{
    neighbours_ = &neighbours;
    seed_ = 0;
    while (seed_ < sorted_.size() && seedGroup(seed_))
        ++seed_;
    report(seed_);
    stats_.comparisons += neighbours.comparisons();
    return seed_ == sorted_.size();
}

bool GroupWalk::seedGroup(std::uint32_t seed)
{
    whileWaiting_();
    if (!neighbours_->ready(seed, whileWaiting_) || ports_.cancel.cancelled())
        return false;
    if (used_[seed])
        return true;
    if (!collect(seed))
        return false;
    return members_.empty() || handOver(seed);
}

bool GroupWalk::collect(std::uint32_t seed)
{
    members_.clear();
    approximate_ = false;
    reference_ = seed;
    bool knowsSeed = false;
    std::uint32_t i = seed;
    while ((i = neighbours_->next(reference_, i)) != Neighbours::none) {
        if (used_[i])
            continue;
        const MatchResult result = compare(reference_, i);
        if (result.cancelled() || ports_.cancel.cancelled())
            return false;
        if (result.endsWalk)
            break;
        if (!result.match())
            continue;
        if (!knowsSeed) {
            known_.clear();
            knowsSeed = known_.insert(sorted_.at(seed).item());
        }
        approximate_ = approximate_ || result.approximate;
        if (!scores_.empty())
            scores_[i] = result.score;
        if (accept(i) && !neighbours_->follow(i, whileWaiting_))
            return false;
    }
    return !ports_.cancel.cancelled();  // neighbours that are looked for end early then
}

MatchResult GroupWalk::compare(std::uint32_t a, std::uint32_t b)
{
    compared_ = {a, b};
    stats_.comparisons += neighbours_->knownScore(a, b) ? 0 : 1;
    return matcher_.compare(sorted_.at(a), sorted_.at(b), neighbours_->keysEqual(a, b));
}

bool GroupWalk::accept(std::uint32_t candidate)
{
    used_[candidate] = true;
    Candidate& file = sorted_.at(candidate);
    if (!known_.insert(file.item())) {
        file.group.value = GroupField::excluded;
        return false;
    }
    members_.push_back(candidate);
    reference_ = candidate;
    return true;
}

// A search for one file's duplicates keeps no other group.
bool GroupWalk::wanted(std::span<const std::uint32_t> group) const
{
    if (mode_.onlyGroupOf == nullptr)
        return true;
    return std::any_of(group.begin(), group.end(), [&](std::uint32_t position) {
        return sameFile(sorted_.at(position).item(), *mode_.onlyGroupOf, ports_.paths);
    });
}

bool GroupWalk::handOver(std::uint32_t seed)
{
    std::vector<std::uint32_t> group{seed};
    group.insert(group.end(), members_.rbegin(), members_.rend());
    if (!wanted(group))
        return true;
    used_[seed] = true;
    const bool approximate = approximate_ || approximateBySize(sorted_.at(seed).item());
    const auto parts = parted(std::move(group));
    if (!parts)
        return false;
    for (const auto& part : *parts)
        if (part.size() > 1 && wanted(part))
            handOver(part, approximate ? add_flag::approximate : 0);
    return true;
}

std::optional<std::vector<std::vector<std::uint32_t>>> GroupWalk::parted(std::vector<std::uint32_t> group)
{
    std::vector<std::vector<std::uint32_t>> whole;
    if (ignored_.isIdle()) {
        whole.push_back(std::move(group));
        return whole;
    }
    std::vector<const ShellItem*> items;
    for (const std::uint32_t position : group)
        items.push_back(&sorted_.at(position).item());
    IgnoredSplitter::Matches matches;
    if (!criteria_.exact())
        matches = [&](std::uint32_t a, std::uint32_t b) {
            const auto [first, second] = std::minmax(group[a], group[b]);
            return compare(first, second).match();  // in the order, and so with the numbers, of the walk
        };
    auto parts = ignored_.split(items, matches);
    if (!parts || ports_.cancel.cancelled())
        return std::nullopt;
    stats_.ignoredPairs = ignored_.partedPairs();
    for (auto& part : *parts)
        for (std::uint32_t& member : part)
            member = group[member];
    return parts;
}

void GroupWalk::handOver(std::span<const std::uint32_t> group, std::uint32_t flags)
{
    ++stats_.groups;
    for (const std::uint32_t position : group)
        handOver(position, flags);
    if (mode_.onlyGroupOf != nullptr)
        ports_.sink.selectLast();
}

void GroupWalk::handOver(std::uint32_t position, std::uint32_t flags)
{
    Candidate& file = sorted_.at(position);
    file.group.value = static_cast<std::int32_t>(stats_.groups);
    ports_.properties.groupChanged(file);
    const auto score = scores_.empty() ? std::nullopt : scores_[position];
    if (ports_.sink.add(file, flags, score))
        ++stats_.grouped;
}

bool GroupWalk::approximateBySize(const ShellItem& seed) const
{
    return criteria_.exactContents() && comparedBySamples(seed, seed, criteria_.options);
}

void GroupWalk::report(std::uint32_t position)
{
    stats_.bytesRead = contents_.bytesRead() + neighbours_->bytesRead();
    pacer_.report({ScanPhase::comparing, position, sorted_.size(), stats_.bytesRead, neighbours_->bytesToRead()});
}

}  // namespace kelvane
