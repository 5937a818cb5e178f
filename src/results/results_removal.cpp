// Taking items off the list, and taking operations back.
#include <algorithm>
#include <utility>

#include "results/results_model.h"

namespace kelvane {

// With the last items of the groups that would be left with one.
std::vector<ItemId> ResultsModel::withSurvivors(std::vector<ItemId> leaving) const
{
    if (!dropsSurvivors_)
        return leaving;
    std::unordered_map<std::uint32_t, std::size_t> leavers;  // by group id
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
    std::vector<ItemId> leaving = withSurvivors(onTheList(items));
    if (leaving.empty())
        return 0;
    const auto count = static_cast<std::uint32_t>(leaving.size());
    takeOff(leaving);
    if (undoable == Undoable::yes)
        history_.push({.removed = std::move(leaving), .orderVersion = orderVersion_});
    else
        history_.clear();
    announce();
    // Rows do not change by this, positions do: only now that nobody waits to be told about the old ones.
    if (undoable == Undoable::no)
        compact();
    return count;
}

void ResultsModel::takeOff(std::span<const ItemId> items)
{
    for (const ItemId id : items)
        setState(id, item(id).state | item_state::removed);
    leaveGroups(items);
    aliveItems_ -= static_cast<std::uint32_t>(items.size());
}

void ResultsModel::putBack(std::span<const ItemId> items)
{
    for (const ItemId id : items)
        setState(id, static_cast<std::uint16_t>(item(id).state & ~item_state::removed));
    enterGroups(items);
    aliveItems_ += static_cast<std::uint32_t>(items.size());
}

void ResultsModel::compact()
{
    if (order_.size() == aliveItems_)
        return;
    std::erase_if(order_, [this](ItemId id) { return item(id).has(item_state::removed); });
    visible_.resize(order_.size());
    ++orderVersion_;
    renumber({0, order_.size()});
}

void ResultsModel::undo()
{
    if (!history_.canUndo())
        return;
    const HistoryStep& step = history_.undo();
    putBack(step.removed);
    moveTo(step.moved, true);
    setFlags(step, false);
    restoreOrder(step, true);
    flip(step.toggled, item_state::ticked);
    announce();
}

void ResultsModel::redo()
{
    if (!history_.canRedo())
        return;
    const HistoryStep& step = history_.redo();
    flip(step.toggled, item_state::ticked);
    moveTo(step.moved, false);
    setFlags(step, true);
    restoreOrder(step, false);
    takeOff(step.removed);
    announce();
}

}  // namespace kelvane
