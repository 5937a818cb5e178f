// Marks, tags and hiding.
#include <algorithm>

#include "results/results_model.h"

namespace kelvane {
namespace {

MarkSum sum(const MarkSum& a, const MarkSum& b)
{
    return {a.items + b.items, a.bytes + b.bytes};
}

bool differs(const ResultItem& item, std::uint16_t bit, bool on)
{
    return !item.has(item_state::removed) && item.has(bit) != on;
}

}  // namespace

void ResultsModel::mark(std::span<const ItemId> items, Mark mark, bool on)
{
    const auto bit = static_cast<std::uint16_t>(mark);
    std::vector<ItemId> changing;
    for (const ItemId id : items) {
        if (differs(item(id), bit, on)) {
            changing.push_back(id);
            setState(id, item(id).state ^ bit);
        }
    }
    flipped(std::move(changing), mark);
}

void ResultsModel::retick(std::span<const ItemId> on, std::span<const ItemId> off)
{
    std::vector<ItemId> changing;
    const auto change = [&](std::span<const ItemId> items, bool ticked) {
        for (const ItemId id : items) {
            if (differs(item(id), item_state::ticked, ticked)) {
                changing.push_back(id);
                setState(id, item(id).state ^ item_state::ticked);
            }
        }
    };
    change(on, true);
    change(off, false);
    flipped(std::move(changing), Mark::ticked);
}

void ResultsModel::flipped(std::vector<ItemId> items, Mark mark)
{
    if (items.empty())
        return;
    tellChanged(items);
    tellCounts();
    if (mark == Mark::ticked)
        history_.push({.toggled = std::move(items)});
}

void ResultsModel::flip(std::span<const ItemId> items, std::uint16_t bit)
{
    for (const ItemId id : items)
        setState(id, item(id).state ^ bit);
    tellChanged(items);
}

void ResultsModel::invertTicks()
{
    std::vector<ItemId> rows = rowsWhere([](const ResultItem&) { return true; });
    for (const ItemId id : rows)
        setState(id, item(id).state ^ item_state::ticked);
    flipped(std::move(rows), Mark::ticked);
}

void ResultsModel::clearTicks()
{
    mark(rowsWhere([](const ResultItem& row) { return row.isTicked(); }), Mark::ticked, false);
}

void ResultsModel::clearSelection()
{
    std::vector<ItemId> selected;
    forEachItem([&](ItemId id) {
        if (item(id).isSelected())
            selected.push_back(id);
    });
    mark(selected, Mark::selected, false);
}

MarkSum ResultsModel::inView(Mark mark) const
{
    return mark == Mark::ticked ? tickedInView_ : selectedInView_;
}

MarkSum ResultsModel::everywhere(Mark mark) const
{
    return mark == Mark::ticked ? sum(tickedInView_, tickedHidden_) : sum(selectedInView_, selectedHidden_);
}

void ResultsModel::setTag(std::span<const ItemId> items, std::uint8_t tag)
{
    for (const ItemId id : items)
        items_[index(id)].tag = tag;
    tellChanged(items);
}

std::uint32_t ResultsModel::hide(std::span<const ItemId> items, std::uint32_t flag)
{
    std::vector<ItemId> rows(items.begin(), items.end());
    std::erase_if(rows, [this](ItemId id) { return !item(id).isVisible(); });
    const Row before = rowCount();
    hidingFlags_ |= flag;
    if (rows.empty())
        return 0;
    replaceRows(stretchOf(rows), [&] {
        for (const ItemId id : rows)
            setState(id, item(id).state | item_state::hidden);
    });
    tellCounts();
    return before - rowCount();
}

std::uint32_t ResultsModel::hideUnless(std::uint32_t flag, const std::function<bool(ItemId)>& stays)
{
    std::vector<ItemId> rows;
    forEachRow([&](ItemId id) {
        if (!stays(id))
            rows.push_back(id);
    });
    return hide(rows, flag);
}

void ResultsModel::showAll()
{
    hidingFlags_ = 0;
    std::vector<ItemId> hidden;
    for (const ItemId id : order_) {
        if (item(id).has(item_state::hidden))
            hidden.push_back(id);
    }
    if (hidden.empty())
        return;
    replaceRows(stretchOf(hidden), [&] {
        for (const ItemId id : hidden)
            setState(id, static_cast<std::uint16_t>(item(id).state & ~item_state::hidden));
    });
    tellCounts();
}

}  // namespace kelvane
