// Counts, sums and what observers are told.
#include <algorithm>
#include <utility>

#include "results/results_model.h"

namespace kelvane {
namespace {

void add(MarkSum& sum, std::uint64_t bytes, bool in)
{
    sum.items += in ? 1 : std::uint64_t(-1);
    sum.bytes += in ? bytes : 0 - bytes;
}

}  // namespace

void ResultsModel::count(const ResultItem& item, bool in)
{
    if (item.has(item_state::removed))
        return;
    const bool hidden = item.has(item_state::hidden);
    if (item.isTicked())
        kelvane::add(hidden ? tickedHidden_ : tickedInView_, item.bytes(), in);
    if (item.isSelected())
        kelvane::add(hidden ? selectedHidden_ : selectedInView_, item.bytes(), in);
}

void ResultsModel::setState(ItemId id, std::uint16_t state)
{
    ResultItem& item = items_[index(id)];
    const bool wasVisible = item.isVisible();
    count(item, false);
    item.state = state;
    count(item, true);
    changes_.counts = true;
    if (item.isVisible() == wasVisible) {
        touchRow(id);
        return;
    }
    visible_.set(positions_[index(id)], !wasVisible);
    changes_.replaced.take(positions_[index(id)]);
}

void ResultsModel::touchRow(ItemId id)
{
    if (item(id).isVisible())
        changes_.changed.take(positions_[index(id)]);
}

void ResultsModel::Stretch::take(std::size_t position)
{
    take(Stretch{position, position + 1});
}

void ResultsModel::Stretch::take(Stretch other)
{
    if (other.empty())
        return;
    first = std::min(first, other.first);
    end = std::max(end, other.end);
}

RowRange ResultsModel::rowsOf(Stretch stretch) const
{
    if (stretch.empty() || order_.empty())
        return {};
    const Row first = visible_.rank(stretch.first);
    return {first, visible_.rank(stretch.end) - first};
}

// The rows before and behind what was replaced are as they were, so their number tells how many stood between them.
void ResultsModel::announce()
{
    const Changes done = std::exchange(changes_, {});
    const Row gone = std::exchange(rowsTold_, rowCount()) - rowCount();  // below 0 (it wraps) when rows came
    const RowRange replaced = rowsOf(done.replaced);
    const RowRange changed = rowsOf(done.changed);
    const bool named = done.replaced.first <= done.changed.first && done.changed.end <= done.replaced.end;
    for (ResultsObserver* observer : observers_) {
        if (replaced.count + gone != 0 || replaced.count != 0)
            observer->rowsReplaced({replaced.first, replaced.count + gone}, replaced.count);
        if (changed.count != 0 && !named)
            observer->rowsChanged(changed);
        if (done.counts)
            observer->countsChanged();
    }
}

void ResultsModel::addObserver(ResultsObserver& observer)
{
    observers_.push_back(&observer);
}

void ResultsModel::removeObserver(ResultsObserver& observer)
{
    std::erase(observers_, &observer);
}

}  // namespace kelvane
