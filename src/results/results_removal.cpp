// Taking items off the list, putting them into other groups, and taking either back.
#include <algorithm>
#include <cassert>
#include <unordered_set>
#include <utility>

#include "results/results_model.h"

namespace kelvane {
namespace {

using Moves = std::span<const HistoryStep::Move>;

std::vector<ItemId> itemsOf(Moves moves)
{
    std::vector<ItemId> items;
    for (const HistoryStep::Move& move : moves)
        items.push_back(move.item);
    return items;
}

}  // namespace

// Without items that are gone already; with the last items of the groups that would be left with one.
std::vector<ItemId> ResultsModel::withSurvivors(std::vector<ItemId> leaving) const
{
    std::erase_if(leaving, [this](ItemId id) { return item(id).has(item_state::removed); });
    std::sort(leaving.begin(), leaving.end());
    leaving.erase(std::unique(leaving.begin(), leaving.end()), leaving.end());
    if (!dropsSurvivors_)
        return leaving;
    std::unordered_map<std::uint32_t, std::uint32_t> leavers;  // by group id
    for (const ItemId id : leaving)
        ++leavers[static_cast<std::uint32_t>(item(id).group)];
    std::vector<ItemId> survivors;
    for (const auto& [group, count] : leavers) {
        const std::vector<ItemId>& members = groups_[group].members;
        if (members.size() - count == 1)
            survivors.push_back(*std::find_if(members.begin(), members.end(), [&](ItemId id) {
                return !std::binary_search(leaving.begin(), leaving.end(), id);
            }));
    }
    leaving.insert(leaving.end(), survivors.begin(), survivors.end());
    return leaving;
}

std::uint32_t ResultsModel::remove(std::span<const ItemId> items, Undoable undoable)
{
    std::vector<ItemId> leaving = withSurvivors({items.begin(), items.end()});
    if (leaving.empty())
        return 0;
    const auto count = static_cast<std::uint32_t>(leaving.size());
    takeOff(leaving);
    if (undoable == Undoable::yes) {
        history_.push({.removed = std::move(leaving)});
    } else {
        history_.clear();
        compact();
    }
    tellCounts();
    return count;
}

void ResultsModel::takeOff(std::span<const ItemId> items)
{
    replaceRows(stretchOf(items), [&] {
        for (const ItemId id : items)
            setState(id, item(id).state | item_state::removed);
    });
    leaveGroups(items);
    aliveItems_ -= static_cast<std::uint32_t>(items.size());
}

void ResultsModel::putBack(std::span<const ItemId> items)
{
    replaceRows(stretchOf(items), [&] {
        for (const ItemId id : items)
            setState(id, static_cast<std::uint16_t>(item(id).state & ~item_state::removed));
    });
    for (const ItemId id : items)
        join(id, item(id).group);
    aliveItems_ += static_cast<std::uint32_t>(items.size());
}

void ResultsModel::join(ItemId id, GroupId groupId)
{
    ResultGroup& group = groups_[index(groupId)];
    liveGroups_ += group.members.empty() ? 1 : 0;
    group.members.push_back(id);
    items_[index(id)].group = groupId;
    items_[index(id)].file.group.value = static_cast<std::int32_t>(group.number);
}

// Each group is gone through once, however many of its members leave.
void ResultsModel::leaveGroups(std::span<const ItemId> items)
{
    std::unordered_set<ItemId> leaving(items.begin(), items.end());
    std::unordered_set<GroupId> groups;
    for (const ItemId id : items)
        groups.insert(item(id).group);
    for (const GroupId groupId : groups) {
        std::vector<ItemId>& members = groups_[index(groupId)].members;
        std::erase_if(members, [&](ItemId id) { return leaving.contains(id); });
        liveGroups_ -= members.empty() ? 1 : 0;
    }
}

void ResultsModel::compact()
{
    std::erase_if(order_, [this](ItemId id) { return item(id).has(item_state::removed); });
    visible_.resize(order_.size());
    ++orderVersion_;
    renumber({0, order_.size()});
}

bool ResultsModel::regroupSelection()
{
    std::vector<ItemId> selected = rowsWhere([](const ResultItem& row) { return row.isSelected(); });
    const auto lower = [this](ItemId a, ItemId b) { return item(a).groupNumber() < item(b).groupNumber(); };
    const auto [least, most] = std::minmax_element(selected.begin(), selected.end(), lower);
    if (selected.empty() || item(*least).group == item(*most).group)
        return false;
    regroup(selected, item(*least).group, dropsSurvivors_);
    return true;
}

bool ResultsModel::mergeWithPrevious()
{
    const std::vector<ItemId> selected = rowsWhere([](const ResultItem& row) { return row.isSelected(); });
    if (selected.empty())
        return false;
    const RowRange run = runAt(*rowOf(selected.front()));
    if (run.first == 0)
        return false;
    std::vector<ItemId> items{itemAt(run.first - 1)};
    for (Row row = run.first; row < run.first + run.count; ++row)
        items.push_back(itemAt(row));
    clearSelection();
    mark(items, Mark::selected, true);
    regroup(items, item(items.front()).group, false);
    return true;
}

void ResultsModel::regroup(std::span<const ItemId> items, GroupId target, bool dropSurvivors)
{
    HistoryStep step;
    std::vector<ItemId> lonely;
    for (const ItemId id : items) {
        if (item(id).group != target)
            step.moved.push_back({id, item(id).group, target});
    }
    moveTo(step.moved, false);
    reorder(step);
    if (dropSurvivors) {
        step.removed = lonelyIn(step.moved);
        takeOff(step.removed);
    }
    history_.push(std::move(step));
    tellCounts();
}

// The last members of the groups that items left.
std::vector<ItemId> ResultsModel::lonelyIn(Moves moves) const
{
    std::vector<ItemId> lonely;
    for (const HistoryStep::Move& move : moves) {
        const std::vector<ItemId>& members = groups_[index(move.from)].members;
        if (members.size() == 1)
            lonely.push_back(members.front());
    }
    std::sort(lonely.begin(), lonely.end());
    lonely.erase(std::unique(lonely.begin(), lonely.end()), lonely.end());
    return lonely;
}

void ResultsModel::moveTo(Moves moves, bool back)
{
    const std::vector<ItemId> items = itemsOf(moves);
    leaveGroups(items);
    for (const HistoryStep::Move& move : moves)
        join(move.item, back ? move.from : move.to);
    tellChanged(items);
}

// Within the stretch that the moved items and the groups concerned span, groups follow one another in the order of
// their first items that did not move, and moved ones come last in their groups.
void ResultsModel::gather(Stretch stretch, std::span<const ItemId> moved)
{
    const std::unordered_set<ItemId> late(moved.begin(), moved.end());
    std::unordered_map<std::uint32_t, std::size_t> places;  // of groups, by id
    std::vector<std::vector<ItemId>> groups;
    for (const bool moving : {false, true}) {
        for (std::size_t position = stretch.first; position < stretch.end; ++position) {
            const ItemId id = order_[position];
            if (late.contains(id) != moving)
                continue;
            const auto [place, added] = places.try_emplace(static_cast<std::uint32_t>(item(id).group), groups.size());
            if (added)
                groups.emplace_back();
            groups[place->second].push_back(id);
        }
    }
    auto next = order_.begin() + static_cast<std::ptrdiff_t>(stretch.first);
    for (const std::vector<ItemId>& group : groups)
        next = std::copy(group.begin(), group.end(), next);
    renumber(stretch);
}

// Keeps the items of a group together, and remembers how the order was.
void ResultsModel::reorder(HistoryStep& step)
{
    if (!grouped_)
        return;
    const Stretch stretch = stretchOfGroups(step.moved);
    const auto slice = [&] {
        return std::vector<ItemId>(order_.begin() + static_cast<std::ptrdiff_t>(stretch.first),
                                   order_.begin() + static_cast<std::ptrdiff_t>(stretch.end));
    };
    step.firstPosition = stretch.first;
    step.orderBefore = slice();
    replaceRows(stretch, [&] { gather(stretch, itemsOf(step.moved)); });
    step.orderAfter = slice();
    step.orderVersion = orderVersion_;
}

ResultsModel::Stretch ResultsModel::stretchOfGroups(Moves moves) const
{
    std::vector<ItemId> items = itemsOf(moves);
    std::unordered_set<GroupId> groups;
    for (const HistoryStep::Move& move : moves) {
        for (const GroupId id : {move.from, move.to}) {
            if (groups.insert(id).second)
                items.insert(items.end(), groups_[index(id)].members.begin(), groups_[index(id)].members.end());
        }
    }
    return stretchOf(items);
}

void ResultsModel::restoreOrder(const HistoryStep& step, bool back)
{
    if (!grouped_)
        return;
    if (step.orderVersion != orderVersion_) {
        const Stretch stretch = stretchOfGroups(step.moved);
        replaceRows(stretch, [&] { gather(stretch, itemsOf(step.moved)); });
        return;
    }
    const std::vector<ItemId>& order = back ? step.orderBefore : step.orderAfter;
    const Stretch stretch{step.firstPosition, step.firstPosition + order.size()};
    replaceRows(stretch, [&] {
        std::copy(order.begin(), order.end(), order_.begin() + static_cast<std::ptrdiff_t>(stretch.first));
        renumber(stretch);
    });
}

void ResultsModel::undo()
{
    if (!history_.canUndo())
        return;
    const HistoryStep& step = history_.undo();
    if (!step.removed.empty())
        putBack(step.removed);
    if (!step.moved.empty()) {
        moveTo(step.moved, true);
        restoreOrder(step, true);
    }
    flip(step.toggled, item_state::ticked);
    tellCounts();
}

void ResultsModel::redo()
{
    if (!history_.canRedo())
        return;
    const HistoryStep& step = history_.redo();
    flip(step.toggled, item_state::ticked);
    if (!step.moved.empty()) {
        moveTo(step.moved, false);
        restoreOrder(step, false);
    }
    if (!step.removed.empty())
        takeOff(step.removed);
    tellCounts();
}

}  // namespace kelvane
