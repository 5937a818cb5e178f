// Marks, tags and hiding.
#include <algorithm>
#include <iterator>
#include <utility>

#include "results/results_model.h"

namespace kelvane {
namespace {

MarkSum sum(const MarkSum& a, const MarkSum& b)
{
    return {a.items + b.items, a.bytes + b.bytes};
}

}  // namespace

// Each of the items once, less those that were removed.
std::vector<ItemId> ResultsModel::onTheList(std::span<const ItemId> items) const
{
    std::vector<ItemId> found;
    found.reserve(items.size());
    std::copy_if(items.begin(), items.end(), std::back_inserter(found),
                 [this](ItemId id) { return !item(id).has(item_state::removed); });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

std::vector<ItemId> ResultsModel::rowsWhere(const std::function<bool(const ResultItem&)>& wanted) const
{
    std::vector<ItemId> found;
    forEachRow([&](ItemId id) {
        if (wanted(item(id)))
            found.push_back(id);
    });
    return found;
}

void ResultsModel::flip(std::span<const ItemId> items, std::uint16_t bits)
{
    for (const ItemId id : items)
        setState(id, item(id).state ^ bits);
}

void ResultsModel::toggleEach(std::vector<ItemId> items, Mark mark)
{
    flip(items, static_cast<std::uint16_t>(mark));
    if (mark == Mark::ticked)
        history_.push({.toggled = std::move(items)});
    announce();
}

void ResultsModel::mark(std::span<const ItemId> items, Mark mark, bool on)
{
    std::vector<ItemId> changing = onTheList(items);
    std::erase_if(changing, [&](ItemId id) { return item(id).has(static_cast<std::uint16_t>(mark)) == on; });
    toggleEach(std::move(changing), mark);
}

void ResultsModel::toggle(std::span<const ItemId> items, Mark mark)
{
    toggleEach(onTheList(items), mark);
}

void ResultsModel::retick(std::span<const ItemId> on, std::span<const ItemId> off)
{
    const std::vector<ItemId> ticking = onTheList(on);
    std::vector<ItemId> changing = onTheList(off);
    std::vector<ItemId> ticked;
    std::set_difference(ticking.begin(), ticking.end(), changing.begin(), changing.end(), std::back_inserter(ticked));
    std::erase_if(changing, [this](ItemId id) { return !item(id).isTicked(); });
    std::copy_if(ticked.begin(), ticked.end(), std::back_inserter(changing),
                 [this](ItemId id) { return !item(id).isTicked(); });
    toggleEach(std::move(changing), Mark::ticked);
}

void ResultsModel::invertTicks()
{
    toggleEach(rowsWhere([](const ResultItem&) { return true; }), Mark::ticked);
}

void ResultsModel::clearTicks()
{
    toggleEach(rowsWhere([](const ResultItem& row) { return row.isTicked(); }), Mark::ticked);
}

std::vector<ItemId> ResultsModel::selectedItems() const
{
    std::vector<ItemId> selected;
    forEachItem([&](ItemId id) {
        if (item(id).isSelected())
            selected.push_back(id);
    });
    return selected;
}

void ResultsModel::clearSelection()
{
    toggleEach(selectedItems(), Mark::selected);
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
    for (const ItemId id : items) {
        if (std::exchange(items_[index(id)].tag, tag) != tag)
            touchRow(id);
    }
    announce();
}

std::uint32_t ResultsModel::hide(std::span<const ItemId> items, std::uint32_t flag)
{
    const Row before = rowCount();
    for (const ItemId id : items) {
        if (item(id).isVisible())
            setState(id, item(id).state | item_state::hidden);
    }
    const std::uint32_t hidden = before - rowCount();
    if (hidden == 0)
        flag &= ~hiding_flag::tickedOnly;
    changes_.counts = changes_.counts || (flag & ~hidingFlags_) != 0;
    hidingFlags_ |= flag;
    announce();
    return hidden;
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
    changes_.counts = hidingFlags_ != 0;
    hidingFlags_ = 0;
    for (const ItemId id : order_) {
        if (item(id).has(item_state::hidden))
            setState(id, static_cast<std::uint16_t>(item(id).state & ~item_state::hidden));
    }
    announce();
}

}  // namespace kelvane
