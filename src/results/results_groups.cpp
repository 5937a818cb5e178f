// Putting items into other groups, and keeping those of a group together.
#include <algorithm>
#include <numeric>
#include <unordered_set>
#include <utility>

#include "results/results_model.h"

namespace kelvane {
namespace {

using Moves = std::span<const HistoryStep::Move>;

std::vector<ItemId> itemsOf(Moves moves)
{
    std::vector<ItemId> items;
    items.reserve(moves.size());
    for (const HistoryStep::Move& move : moves)
        items.push_back(move.item);
    return items;
}

// The file's number, and the value of Stock.GroupID where one was read already.
void setGroupNumber(ItemContext& file, std::uint32_t number)
{
    file.group.value = static_cast<std::int32_t>(number);
    if (PROPCACHE* const node = file.find(property_id::groupId, PropKind::number)) {
        node->value = number;
        node->raw = RawValue::number(VarType::uint32, number);
    }
}

}  // namespace

// Joins the groups that the items name as theirs.
void ResultsModel::enterGroups(std::span<const ItemId> items)
{
    std::unordered_set<GroupId> entered;
    changes_.counts = changes_.counts || !items.empty();
    for (const ItemId id : items) {
        ResultGroup& group = groups_[index(item(id).group)];
        liveGroups_ += group.members.empty() ? 1 : 0;
        group.members.push_back(id);
        setGroupNumber(file(id), group.number);
        entered.insert(item(id).group);
    }
    for (const GroupId groupId : entered)
        std::sort(groups_[index(groupId)].members.begin(), groups_[index(groupId)].members.end());
}

// Each group is gone through once, however many of its members leave.
void ResultsModel::leaveGroups(std::span<const ItemId> items)
{
    const std::unordered_set<ItemId> leaving(items.begin(), items.end());
    std::unordered_set<GroupId> groups;
    for (const ItemId id : items)
        groups.insert(item(id).group);
    for (const GroupId groupId : groups) {
        std::vector<ItemId>& members = groups_[index(groupId)].members;
        std::erase_if(members, [&](ItemId id) { return leaving.contains(id); });
        liveGroups_ -= members.empty() ? 1 : 0;
    }
}

bool ResultsModel::regroupSelection()
{
    const std::vector<ItemId> selected = rowsWhere([](const ResultItem& row) { return row.isSelected(); });
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
    std::vector<ItemId> items;
    for (Row row = run.first - 1; row < run.first + run.count; ++row)
        items.push_back(itemAt(row));
    flip(selectedItems(), item_state::selected);
    flip(items, item_state::selected);
    regroup(items, item(items.front()).group, false);
    return true;
}

void ResultsModel::regroup(std::span<const ItemId> items, GroupId target, bool dropSurvivors)
{
    HistoryStep step;
    for (const ItemId id : items) {
        if (item(id).group != target)
            step.moved.push_back({id, item(id).group, target});
    }
    moveTo(step.moved, false);
    spreadFlags(step);
    reorder(step);
    if (dropSurvivors) {
        step.removed = lonelyIn(step.moved);
        takeOff(step.removed);
    }
    history_.push(std::move(step));
    announce();
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
    return onTheList(lonely);
}

void ResultsModel::moveTo(Moves moves, bool back)
{
    const std::vector<ItemId> items = itemsOf(moves);
    leaveGroups(items);
    for (const HistoryStep::Move& move : moves)
        items_[index(move.item)].group = back ? move.from : move.to;
    enterGroups(items);
    for (const ItemId id : items)
        touchRow(id);
}

void ResultsModel::setApproximate(GroupId groupId, bool approximate)
{
    groups_[index(groupId)].approximate = approximate;
    for (const ItemId id : groups_[index(groupId)].members)
        touchRow(id);
}

void ResultsModel::setFlags(const HistoryStep& step, bool on)
{
    if (step.madeApproximate)
        setApproximate(*step.madeApproximate, on);
    if (step.madeByHand)
        groups_[index(*step.madeByHand)].joinedByHand = on;
}

// What was compared by samples only stays so in whatever group it is.
void ResultsModel::spreadFlags(HistoryStep& step)
{
    const GroupId target = step.moved.front().to;
    const ResultGroup& group = groups_[index(target)];
    const bool sampled = std::any_of(step.moved.begin(), step.moved.end(), [this](const HistoryStep::Move& move) {
        return groups_[index(move.from)].approximate;
    });
    if (sampled && !group.approximate)
        step.madeApproximate = target;
    if (!group.joinedByHand)
        step.madeByHand = target;
    setFlags(step, true);
}

// Brings the items of each group of the stretch together, where the first of those that did not move is; items that
// moved come last in their groups. Removed items go along, but no group goes where they are.
void ResultsModel::gather(Stretch stretch, Moves moved)
{
    const std::size_t size = stretch.end - stretch.first;
    const std::span<ItemId> items(order_.begin() + static_cast<std::ptrdiff_t>(stretch.first), size);
    std::vector<std::uint8_t> ranks(size);  // what decides on the place of a group: 0 before 1 before 2
    for (std::size_t i = 0; i < size; ++i)
        ranks[i] = item(items[i]).has(item_state::removed) ? 2 : 0;
    for (const HistoryStep::Move& move : moved)
        ranks[positions_[index(move.item)] - stretch.first] = 1;

    std::vector<std::uint32_t> places(groups_.size(), static_cast<std::uint32_t>(size));  // in the stretch
    for (int rank = 0; rank <= 2; ++rank) {
        for (std::size_t i = 0; i < size; ++i) {
            std::uint32_t& place = places[index(item(items[i]).group)];
            if (ranks[i] == rank && place == size)
                place = static_cast<std::uint32_t>(i);
        }
    }
    std::vector<std::uint32_t> next(size + 1);  // where the next item of the group with this place goes
    for (const ItemId id : items)
        ++next[places[index(item(id).group)] + 1];
    std::partial_sum(next.begin(), next.end(), next.begin());
    std::vector<ItemId> gathered(size);
    for (const bool late : {false, true}) {
        for (std::size_t i = 0; i < size; ++i) {
            if ((ranks[i] == 1) == late)
                gathered[next[places[index(item(items[i]).group)]]++] = items[i];
        }
    }
    std::copy(gathered.begin(), gathered.end(), items.begin());
    renumber(stretch);
    changes_.replaced.take(stretch);
}

// Keeps the items of a group together, and remembers how the order was.
void ResultsModel::reorder(HistoryStep& step)
{
    step.orderVersion = orderVersion_;
    if (!grouped_)
        return;
    const Stretch stretch = stretchOfGroups(step.moved);
    const std::span<const ItemId> items(order_.begin() + static_cast<std::ptrdiff_t>(stretch.first),
                                        stretch.end - stretch.first);
    step.firstPosition = stretch.first;
    step.orderBefore.assign(items.begin(), items.end());
    gather(stretch, step.moved);
    step.orderAfter.assign(items.begin(), items.end());
}

ResultsModel::Stretch ResultsModel::stretchOfGroups(Moves moves) const
{
    Stretch stretch;
    std::unordered_set<GroupId> groups;
    for (const HistoryStep::Move& move : moves) {
        for (const GroupId groupId : {move.from, move.to}) {
            if (!groups.insert(groupId).second)
                continue;
            for (const ItemId id : groups_[index(groupId)].members)
                stretch.take(positions_[index(id)]);
        }
    }
    return stretch;
}

// After a sort the places that items had are not known any more: the groups are gathered anew, which makes an order
// that no other step of history knows.
void ResultsModel::restoreOrder(const HistoryStep& step, bool back)
{
    if (!grouped_ || (step.moved.empty() && (step.removed.empty() || !back)))
        return;
    if (step.orderVersion != orderVersion_) {
        gather({0, order_.size()}, step.moved);
        ++orderVersion_;
        return;
    }
    const std::vector<ItemId>& order = back ? step.orderBefore : step.orderAfter;
    const Stretch stretch{step.firstPosition, step.firstPosition + order.size()};
    std::copy(order.begin(), order.end(), order_.begin() + static_cast<std::ptrdiff_t>(stretch.first));
    renumber(stretch);
    changes_.replaced.take(stretch);
}

}  // namespace kelvane
