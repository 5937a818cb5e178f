#include "results/reference_results.h"

#include <algorithm>
#include <utility>

namespace kelvane::testing {

void ReferenceResults::add(std::uint32_t group, std::uint64_t bytes, bool sampled)
{
    done_.clear();
    undone_.clear();
    order = alive();
    if (!members(group).empty())
        grouped = grouped && items[order.back()].group == group;
    byHand[group] = byHand[group] && !members(group).empty();
    approximate[group] = sampled || (approximate[group] && !members(group).empty());
    order.push_back(static_cast<Number>(items.size()));
    items.push_back({.group = group, .bytes = bytes});
}

void ReferenceResults::setOrder(Numbers wanted, bool groupsTogether)
{
    order = std::move(wanted);
    grouped = groupsTogether;
    ++sorts_;
}

void ReferenceResults::tick(const Numbers& on, const Numbers& off)
{
    Snapshot before = snapshot();
    for (const Number number : on)
        items[number].ticked = items[number].removed ? items[number].ticked : true;
    for (const Number number : off)
        items[number].ticked = items[number].removed ? items[number].ticked : false;
    record(std::move(before));
}

void ReferenceResults::toggle(const Numbers& those)
{
    Snapshot before = snapshot();
    for (const Number number : std::set<Number>(those.begin(), those.end()))
        items[number].ticked ^= !items[number].removed;
    record(std::move(before));
}

void ReferenceResults::select(const Numbers& those, bool on)
{
    for (const Number number : those)
        items[number].selected = items[number].removed ? items[number].selected : on;
}

void ReferenceResults::tag(const Numbers& those, std::uint8_t value)
{
    for (const Number number : those)
        items[number].tag = value;
}

std::uint32_t ReferenceResults::hide(const Numbers& those, std::uint32_t flag)
{
    std::uint32_t hidden = 0;
    for (const Number number : those) {
        hidden += items[number].visible() ? 1 : 0;
        items[number].hidden = items[number].hidden || items[number].visible();
    }
    if (hidden > 0 || flag != hiding_flag::tickedOnly)
        hidingFlags |= flag;
    return hidden;
}

void ReferenceResults::showAll()
{
    hidingFlags = 0;
    for (Item& item : items)
        item.hidden = false;
}

std::uint32_t ReferenceResults::remove(const Numbers& those, Undoable undoable)
{
    Snapshot before = snapshot();
    std::set<std::uint32_t> groups;
    for (const Number number : those) {
        if (!std::exchange(items[number].removed, true))
            groups.insert(items[number].group);
    }
    if (dropsSurvivors) {
        for (const Number number : lonelyOf(groups))
            items[number].removed = true;
    }
    const auto count = static_cast<std::uint32_t>(before.alive.size() - alive().size());
    if (undoable == Undoable::yes) {
        record(std::move(before));
    } else if (count != 0) {
        done_.clear();
        undone_.clear();
        order = alive();
    }
    return count;
}

std::set<ReferenceResults::Number> ReferenceResults::lonelyOf(const std::set<std::uint32_t>& groups) const
{
    std::set<Number> lonely;
    for (const std::uint32_t group : groups) {
        if (const Numbers left = members(group); left.size() == 1)
            lonely.insert(left.front());
    }
    return lonely;
}

bool ReferenceResults::regroupSelection()
{
    std::set<std::uint32_t> groups;
    for (const Number number : selectedRows())
        groups.insert(items[number].group);
    if (groups.size() < 2)
        return false;
    regroup(selectedRows(), *groups.begin(), dropsSurvivors);
    return true;
}

bool ReferenceResults::mergeWithPrevious()
{
    const Numbers all = rows();
    const auto selected =
        std::find_if(all.begin(), all.end(), [this](Number number) { return items[number].selected; });
    if (selected == all.end())
        return false;
    const std::uint32_t current = items[*selected].group;
    const auto other = [&](Number number) { return items[number].group != current; };
    const auto previous = std::find_if(std::make_reverse_iterator(selected), all.rend(), other);
    if (previous == all.rend())
        return false;
    const Numbers chosen(previous.base() - 1, std::find_if(selected, all.end(), other));
    for (Item& item : items)
        item.selected = item.selected && item.removed;
    select(chosen, true);
    regroup(chosen, items[*previous].group, false);
    return true;
}

void ReferenceResults::regroup(const Numbers& those, std::uint32_t target, bool dropLonely)
{
    Snapshot before = snapshot();
    std::set<std::uint32_t> left;
    std::set<Number> moved;
    for (const Number number : those) {
        if (items[number].group == target)
            continue;
        left.insert(items[number].group);
        moved.insert(number);
        approximate[target] = approximate[target] || approximate[items[number].group];
        byHand[target] = true;
        items[number].group = target;
    }
    if (grouped)
        gather(moved);
    if (dropLonely) {
        for (const Number number : lonelyOf(left))
            items[number].removed = true;
    }
    record(std::move(before));
}

// Groups stand where the first of their items that did not move stands, moved items last.
void ReferenceResults::gather(const std::set<Number>& moved)
{
    std::map<std::uint32_t, std::size_t> places;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (!items[order[i]].removed && !moved.contains(order[i]))
            places.try_emplace(items[order[i]].group, i);
    }
    std::stable_sort(order.begin(), order.end(), [&](Number a, Number b) {
        const auto key = [&](Number number) { return std::pair(places[items[number].group], moved.contains(number)); };
        return key(a) < key(b);
    });
}

void ReferenceResults::record(Snapshot before)
{
    const auto same = [](const Item& a, const Item& b) {
        return a.ticked == b.ticked && a.removed == b.removed && a.group == b.group;
    };
    if (std::equal(items.begin(), items.end(), before.items.begin(), same))
        return;
    done_.push_back({std::move(before), snapshot(), sorts_});
    undone_.clear();
}

void ReferenceResults::undo()
{
    if (done_.empty())
        return;
    undone_.push_back(done_.back());
    done_.pop_back();
    restore(undone_.back().after, undone_.back().before, undone_.back().sorts, true);
}

void ReferenceResults::redo()
{
    if (undone_.empty())
        return;
    done_.push_back(undone_.back());
    undone_.pop_back();
    restore(done_.back().before, done_.back().after, done_.back().sorts, false);
}

void ReferenceResults::restore(const Snapshot& from, const Snapshot& to, unsigned sorts, bool undoing)
{
    touched_.clear();
    bool places = false;
    for (Number number = 0; number < items.size(); ++number) {
        const Item &a = from.items[number], &b = to.items[number];
        places = places || a.group != b.group || (undoing && a.removed != b.removed);
        if (a.group != b.group || a.removed != b.removed)
            touched_.insert({a.group, b.group});
        items[number].ticked = a.ticked != b.ticked ? b.ticked : items[number].ticked;
        items[number].removed = b.removed;
        items[number].group = b.group;
    }
    approximate = to.approximate;
    byHand = to.byHand;
    orderIsKnown_ = !grouped || !places || sorts == sorts_;
    if (grouped && places && sorts == sorts_) {
        // Where removed items wait does not matter.
        Numbers known = to.alive;
        std::copy_if(order.begin(), order.end(), std::back_inserter(known),
                     [this](Number number) { return items[number].removed; });
        order = std::move(known);
    }
    if (!orderIsKnown_)
        ++sorts_;
}

ReferenceResults::Numbers ReferenceResults::alive() const
{
    Numbers found = order;
    std::erase_if(found, [this](Number number) { return items[number].removed; });
    return found;
}

ReferenceResults::Numbers ReferenceResults::rows() const
{
    Numbers found = order;
    std::erase_if(found, [this](Number number) { return !items[number].visible(); });
    return found;
}

ReferenceResults::Numbers ReferenceResults::selectedRows() const
{
    Numbers found = rows();
    std::erase_if(found, [this](Number number) { return !items[number].selected; });
    return found;
}

ReferenceResults::Numbers ReferenceResults::members(std::uint32_t group) const
{
    Numbers found = alive();
    std::erase_if(found, [&](Number number) { return items[number].group != group; });
    std::sort(found.begin(), found.end());
    return found;
}

MarkSum ReferenceResults::sum(bool Item::*mark, bool hiddenToo) const
{
    MarkSum total;
    for (const Item& item : items) {
        if (!item.removed && item.*mark && (hiddenToo || !item.hidden)) {
            ++total.items;
            total.bytes += item.bytes;
        }
    }
    return total;
}

}  // namespace kelvane::testing
