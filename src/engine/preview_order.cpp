#include "engine/preview_order.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <utility>

#include "engine/merge_sort.h"

namespace kelvane {
namespace {

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

// At the cancel flag.
bool isDueToLook(std::uint64_t step)
{
    return step % 8192 == 0;
}

constexpr int mostRounds = 8;  // of joining the ends of chains

// Chains grown from the closest links on: each preview gets at most two neighbours, and no chain is closed (the greedy
// heuristic for short tours, see J. L. Bentley, "Fast algorithms for geometric traveling salesman problems", 1992).
class Chains {
public:
    explicit Chains(std::size_t count) : neighbours_(count, {none, none}), roots_(count)
    {
        std::iota(roots_.begin(), roots_.end(), 0);
    }

    // Whether the two are ends of different chains.
    [[nodiscard]] bool canJoin(std::uint32_t a, std::uint32_t b)
    {
        return isEnd(a) && isEnd(b) && rootOf(a) != rootOf(b);
    }
    void join(std::uint32_t a, std::uint32_t b)
    {
        if (!canJoin(a, b))
            return;
        roots_[rootOf(a)] = rootOf(b);
        add(a, b);
        add(b, a);
    }
    [[nodiscard]] bool isEnd(std::uint32_t number) const { return neighbours_[number][1] == none; }

    // All of the chain that the preview is in, from one end to the other.
    void follow(std::uint32_t member, std::vector<std::uint32_t>& into) const
    {
        std::uint32_t before = neighbours_[member][1];
        std::uint32_t at = member;
        while (at != none)
            at = step(at, before);
        std::uint32_t end = before;
        for (before = none, at = end; at != none; at = step(at, before))
            into.push_back(at);
    }

private:
    std::uint32_t rootOf(std::uint32_t number)
    {
        while (roots_[number] != number)
            number = roots_[number] = roots_[roots_[number]];
        return number;
    }

    // Onwards from `at`, which becomes the one before.
    std::uint32_t step(std::uint32_t at, std::uint32_t& before) const
    {
        const auto& [first, second] = neighbours_[at];
        const std::uint32_t next = first != before ? first : second;
        before = at;
        return next;
    }

    void add(std::uint32_t to, std::uint32_t neighbour)
    {
        neighbours_[to][neighbours_[to][0] == none ? 0 : 1] = neighbour;
    }

    std::vector<std::array<std::uint32_t, 2>> neighbours_;
    std::vector<std::uint32_t> roots_;
};

struct Link {
    float distance;
    std::uint32_t a, b;
    friend auto operator<=>(const Link&, const Link&) = default;
};

// Nothing when cancelled.
std::optional<std::vector<Link>> linksOf(const AlikePreviews& alikes, const CancelFlag& cancel)
{
    constexpr std::size_t block = 262'144;
    std::vector<Link> links;
    for (std::uint32_t i = 0; i < alikes.size(); ++i) {
        if (isDueToLook(i) && cancel.cancelled())
            return std::nullopt;
        for (const AlikePreview& alike : alikes.of(i))
            links.push_back({alike.distance, std::min(i, alike.number), std::max(i, alike.number)});
    }
    if (!mergeSort(links, block, cancel))
        return std::nullopt;
    return links;
}

// False when cancelled.
bool joinAlikes(const AlikePreviews& alikes, Chains& chains, const CancelFlag& cancel)
{
    const auto links = linksOf(alikes, cancel);
    if (!links)
        return false;
    std::uint64_t step = 0;
    for (const Link& link : *links) {
        if (isDueToLook(step++) && cancel.cancelled())
            return false;
        chains.join(link.a, link.b);
    }
    return true;
}

// Puts chains one after the other, those that are linked near one another.
class Places {
public:
    Places(const AlikePreviews& alikes, const Chains& chains)
        : alikes_(alikes), chains_(chains), places_(alikes.size(), none)
    {
    }

    // The chain of this preview, and all that can be reached from it by links. False when cancelled.
    [[nodiscard]] bool take(std::uint32_t number, const CancelFlag& cancel)
    {
        pending_.push_back(number);
        while (!pending_.empty()) {
            if (isDueToLook(steps_++) && cancel.cancelled())
                return false;
            const std::uint32_t next = pending_.back();
            pending_.pop_back();
            if (places_[next] == none)
                takeChain(next);
        }
        return true;
    }

    [[nodiscard]] std::vector<std::uint32_t> made()
    {
        for (std::uint32_t& place : places_)
            if (place == none)
                place = taken_++;
        return std::move(places_);
    }

private:
    void takeChain(std::uint32_t member)
    {
        chain_.clear();
        chains_.follow(member, chain_);
        for (const std::uint32_t i : chain_)
            places_[i] = taken_++;
        for (const std::uint32_t i : chain_) {
            const auto alikes = alikes_.of(i);
            for (auto alike = alikes.rbegin(); alike != alikes.rend(); ++alike)
                if (places_[alike->number] == none)
                    pending_.push_back(alike->number);
        }
    }

    const AlikePreviews& alikes_;
    const Chains& chains_;
    std::vector<std::uint32_t> places_;
    std::uint32_t taken_ = 0;
    std::uint64_t steps_ = 0;
    std::vector<std::uint32_t> pending_, chain_;
};

// Ends of chains whose nearest relatives are all taken look farther: where very many are alike, those found ahead are
// but the nearest. Each round joins what is closest; what is left after the last has no end to go to. False when
// cancelled.
bool joinEnds(const AlikePreviews& alikes, Chains& chains, const CancelFlag& cancel)
{
    std::vector<std::uint32_t> ends;
    for (std::uint32_t i = 0; i < alikes.size(); ++i)
        if (alikes.of(i).size() == AlikePreviews::most && chains.isEnd(i))
            ends.push_back(i);
    for (int round = 0; round < mostRounds && !ends.empty(); ++round) {
        std::vector<Link> links;
        for (const std::uint32_t end : ends) {
            if (cancel.cancelled())
                return false;
            const auto other = alikes.nearest(end, [&](std::uint32_t i) { return chains.canJoin(end, i); });
            if (other)
                links.push_back({other->distance, end, other->number});
        }
        std::sort(links.begin(), links.end());
        ends.clear();
        for (const Link& link : links) {
            chains.join(link.a, link.b);
            ends.push_back(link.a);
        }
        std::erase_if(ends, [&](std::uint32_t end) { return !chains.isEnd(end); });
    }
    return true;
}

}  // namespace

std::optional<std::vector<std::uint32_t>> placesByLooks(const AlikePreviews& alikes, const CancelFlag& cancel)
{
    Chains chains(alikes.size());
    if (!joinAlikes(alikes, chains, cancel) || !joinEnds(alikes, chains, cancel))
        return std::nullopt;
    Places places(alikes, chains);
    for (const AlikePreviews::Group& group : alikes.groups())
        for (const std::uint32_t number : group)
            if (!places.take(number, cancel))
                return std::nullopt;
    return places.made();
}

}  // namespace kelvane
