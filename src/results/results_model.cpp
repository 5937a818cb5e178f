#include "results/results_model.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace kelvane {
ResultsModel::ResultsModel() = default;
ResultsModel::~ResultsModel() = default;

Status ResultsModel::add(const Candidate& file, std::uint32_t flags, std::optional<std::int32_t> /*score*/)
{
    add(file.itemRef(), static_cast<std::uint32_t>(file.group.value), (flags & add_flag::approximate) != 0);
    return {};
}

void ResultsModel::add(Ref<const ShellItem> file, std::uint32_t groupNumber, bool approximate)
{
    history_.clear();
    compact();
    append(std::move(file), groupNumber, approximate);
    announce();
}

GroupId ResultsModel::groupNumbered(std::uint32_t number)
{
    const auto [found, added] = groupIds_.try_emplace(number, static_cast<GroupId>(groups_.size()));
    if (added)
        groups_.push_back({.number = number, .members = {}});
    return found->second;
}

void ResultsModel::append(Ref<const ShellItem> file, std::uint32_t groupNumber, bool approximate)
{
    const auto id = static_cast<ItemId>(items_.size());
    const GroupId groupId = groupNumbered(groupNumber);
    ResultGroup& group = groups_[index(groupId)];
    if (group.members.empty()) {
        group.approximate = approximate;
        group.joinedByHand = false;
        ++liveGroups_;
    } else {
        grouped_ = grouped_ && items_[index(order_.back())].group == groupId;
        if (approximate && !group.approximate)
            setApproximate(groupId, true);
    }
    group.members.push_back(id);
    items_.push_back({ItemContext(std::move(file)), 0, noTag, groupId});
    items_.back().file.group.value = static_cast<std::int32_t>(groupNumber);
    positions_.push_back(static_cast<std::uint32_t>(order_.size()));
    order_.push_back(id);
    visible_.resize(order_.size());
    ++aliveItems_;
    changes_.replaced.take(order_.size() - 1);
    changes_.counts = true;
}

void ResultsModel::selectLast()
{
    if (!order_.empty())
        mark(std::span(&order_.back(), 1), Mark::selected, true);
}

void ResultsModel::clear()
{
    items_.clear();
    groups_.clear();
    groupIds_.clear();
    order_.clear();
    positions_.clear();
    visible_ = {};
    history_.clear();
    tickedInView_ = tickedHidden_ = selectedInView_ = selectedHidden_ = {};
    aliveItems_ = liveGroups_ = hidingFlags_ = 0;
    grouped_ = true;
    changes_.replaced.take(0);
    changes_.counts = true;
    announce();
}

Row ResultsModel::rowCount() const
{
    return visible_.count();
}

ItemId ResultsModel::itemAt(Row row) const
{
    return order_[visible_.select(row)];
}

std::optional<Row> ResultsModel::rowOf(ItemId item) const
{
    if (!items_[index(item)].isVisible())
        return std::nullopt;
    return visible_.rank(positions_[index(item)]);
}

std::uint32_t ResultsModel::itemCount() const
{
    return aliveItems_;
}

std::uint32_t ResultsModel::hiddenCount() const
{
    return aliveItems_ - rowCount();
}

void ResultsModel::forEachRow(const std::function<void(ItemId)>& visit) const
{
    for (std::size_t position = 0; position < order_.size(); ++position) {
        if (visible_.test(position))
            visit(order_[position]);
    }
}

void ResultsModel::forEachItem(const std::function<void(ItemId)>& visit) const
{
    for (const ItemId id : order_) {
        if (!item(id).has(item_state::removed))
            visit(id);
    }
}

void ResultsModel::forEachRun(const std::function<bool(std::span<const ItemId>)>& visit) const
{
    std::vector<ItemId> run;
    for (std::size_t position = 0; position < order_.size(); ++position) {
        if (!visible_.test(position))
            continue;
        const ItemId id = order_[position];
        if (!run.empty() && item(run.back()).group != item(id).group) {
            if (!visit(run))
                return;
            run.clear();
        }
        run.push_back(id);
    }
    if (!run.empty())
        (void)visit(run);
}

RowRange ResultsModel::runAt(Row row) const
{
    const GroupId group = item(itemAt(row)).group;
    Row first = row, end = row + 1;
    while (first > 0 && item(itemAt(first - 1)).group == group)
        --first;
    while (end < rowCount() && item(itemAt(end)).group == group)
        ++end;
    return {first, end - first};
}

void ResultsModel::setOrder(std::vector<ItemId> order, bool grouped)
{
    assert(order.size() == order_.size());
    order_ = std::move(order);
    grouped_ = grouped;
    ++orderVersion_;
    renumber({0, order_.size()});
    changes_.replaced.take({0, order_.size()});
    announce();
}

void ResultsModel::renumber(Stretch stretch)
{
    for (std::size_t position = stretch.first; position < stretch.end; ++position) {
        positions_[index(order_[position])] = static_cast<std::uint32_t>(position);
        visible_.set(position, item(order_[position]).isVisible());
    }
}

}  // namespace kelvane
