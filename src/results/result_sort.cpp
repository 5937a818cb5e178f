#include "results/result_sort.h"

#include <algorithm>
#include <numeric>

#include "results/sort_column.h"

namespace kelvane {
namespace {

std::vector<ItemId> byGroupNumber(const ResultsModel& model)
{
    std::vector<ItemId> order(model.order().begin(), model.order().end());
    std::sort(order.begin(), order.end(), [&](ItemId a, ItemId b) {
        const std::uint32_t left = model.item(a).groupNumber(), right = model.item(b).groupNumber();
        return left != right ? left < right : a < b;
    });
    return order;
}

std::optional<std::vector<SortColumn>> columnsOf(ResultsModel& model, std::span<const ItemId> items,
                                                 const std::vector<SortKey>& keys, const PropertySource& properties,
                                                 const CancelFlag& cancel)
{
    std::vector<SortColumn> columns;
    columns.reserve(keys.size());
    for (const SortKey& key : keys) {
        columns.emplace_back(model, items, key, properties, cancel);
        if (!columns.back().complete())
            return std::nullopt;
    }
    return columns;
}

int compare(const std::vector<SortColumn>& columns, std::uint32_t a, std::uint32_t b)
{
    for (const SortColumn& column : columns) {
        if (const int order = column.compare(a, b); order != 0)
            return order;
    }
    return 0;
}

// Groups in the order of their first members: a counting sort, and so stable.
std::vector<ItemId> groupsTogether(const ResultsModel& model, const std::vector<ItemId>& sorted)
{
    constexpr std::uint32_t unseen = UINT32_MAX;
    std::vector<std::uint32_t> places;  // of groups, by id, in the order in which they come up
    std::vector<std::size_t> starts{0};
    const auto placeOf = [&](ItemId id) -> std::uint32_t& {
        const auto group = static_cast<std::size_t>(model.item(id).group);
        if (group >= places.size())
            places.resize(group + 1, unseen);
        return places[group];
    };
    for (const ItemId id : sorted) {
        std::uint32_t& place = placeOf(id);
        if (place == unseen) {
            place = static_cast<std::uint32_t>(starts.size() - 1);
            starts.push_back(0);
        }
        ++starts[place + 1];
    }
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<ItemId> order(sorted.size());
    for (const ItemId id : sorted)
        order[starts[placeOf(id)]++] = id;
    return order;
}

}  // namespace

std::optional<std::vector<ItemId>> sortedOrder(ResultsModel& model, const std::vector<SortKey>& keys,
                                               GroupedOrder grouped, const PropertySource& properties,
                                               const CancelFlag& cancel)
{
    if (keys.empty())
        return byGroupNumber(model);
    const auto items = model.order();
    const auto columns = columnsOf(model, items, keys, properties, cancel);
    if (!columns)
        return std::nullopt;
    std::vector<std::uint32_t> places(items.size());
    std::iota(places.begin(), places.end(), 0u);
    std::stable_sort(places.begin(), places.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return compare(*columns, a, b) < 0; });
    std::vector<ItemId> order(items.size());
    std::transform(places.begin(), places.end(), order.begin(), [&](std::uint32_t place) { return items[place]; });
    return grouped == GroupedOrder::yes ? groupsTogether(model, order) : order;
}

bool sortResults(ResultsModel& model, const std::vector<SortKey>& keys, GroupedOrder grouped,
                 const PropertySource& properties, const CancelFlag& cancel)
{
    auto order = sortedOrder(model, keys, grouped, properties, cancel);
    if (!order)
        return false;
    model.setOrder(*std::move(order), keys.empty() || grouped == GroupedOrder::yes);
    return true;
}

}  // namespace kelvane
