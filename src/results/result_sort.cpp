#include "results/result_sort.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "results/value_ranks.h"

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

// Those with the lowest number first, the others as they stand: a counting sort, and so stable. Numbers are below the
// limit.
template <class Value, class NumberOf>
std::vector<Value> byNumber(const std::vector<Value>& values, std::size_t limit, NumberOf numberOf)
{
    std::vector<std::uint32_t> starts(limit + 1);
    for (const Value value : values)
        ++starts[numberOf(value) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<Value> sorted(values.size());
    for (const Value value : values)
        sorted[starts[numberOf(value)]++] = value;
    return sorted;
}

// Groups in the order in which the items of the list come upon them; those that have none left on it come last.
std::vector<ItemId> groupsTogether(const ResultsModel& model, const std::vector<ItemId>& sorted)
{
    constexpr std::uint32_t unseen = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::uint32_t> places;  // by group
    std::uint32_t next = 0;
    const auto groupOf = [&](ItemId id) { return static_cast<std::size_t>(model.item(id).group); };
    const auto meet = [&](ItemId id) {
        if (groupOf(id) >= places.size())
            places.resize(groupOf(id) + 1, unseen);
        std::uint32_t& place = places[groupOf(id)];
        place = place == unseen ? next++ : place;
    };
    for (const ItemId id : sorted) {
        if (!model.item(id).has(item_state::removed))
            meet(id);
    }
    std::for_each(sorted.begin(), sorted.end(), meet);
    return byNumber(sorted, next, [&](ItemId id) { return places[groupOf(id)]; });
}

}  // namespace

std::optional<std::vector<ItemId>> sortedOrder(ResultsModel& model, const std::vector<SortKey>& keys,
                                               GroupedOrder grouped, const PropertySource& properties,
                                               const CancelFlag& cancel)
{
    if (keys.empty())
        return byGroupNumber(model);
    const auto items = model.order();
    std::vector<std::uint32_t> places(items.size());
    std::iota(places.begin(), places.end(), 0u);
    // The last key first: each sort is stable, so that the keys before it have the last word.
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        const auto values = rankValues(model, items, key->property, properties, cancel);
        if (!values)
            return std::nullopt;
        places = byNumber(places, values->distinct + std::size_t{1}, [&](std::uint32_t place) {
            const std::uint32_t rank = values->ranks[place];
            return key->ascending || rank == values->distinct ? rank : values->distinct - 1 - rank;
        });
    }
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
