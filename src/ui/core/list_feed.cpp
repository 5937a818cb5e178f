#include "ui/core/list_feed.h"

#include <algorithm>

namespace kelvane {

ListFeed::ListFeed(ResultsModel& model) : model_(model)
{
    model_.addObserver(*this);
    if (model_.rowCount() > 0)
        rowsReplaced({0, 0}, model_.rowCount());
}

ListFeed::~ListFeed()
{
    model_.removeObserver(*this);
}

std::optional<RowPatch> ListFeed::take()
{
    if (!rows_ && !counts_)
        return std::nullopt;
    RowPatch patch;
    patch.figures = figuresOf(model_);
    if (rows_) {
        const Row end = model_.rowCount() - kept_;
        patch.first = first_;
        patch.before = told_ - kept_ - first_;
        patch.entries.reserve(end - first_);
        for (Row row = first_; row < end; ++row)
            patch.entries.push_back(entryOf(model_.itemAt(row)));
        told_ = model_.rowCount();
    }
    rows_ = counts_ = false;
    return patch;
}

void ListFeed::rowsReplaced(RowRange before, Row after)
{
    touch(before.first, model_.rowCount() - before.first - after);
}

void ListFeed::rowsChanged(RowRange rows)
{
    touch(rows.first, model_.rowCount() - rows.first - rows.count);
}

void ListFeed::touch(Row first, Row kept)
{
    first_ = rows_ ? std::min(first_, first) : first;
    kept_ = rows_ ? std::min(kept_, kept) : kept;
    rows_ = true;
}

RowEntry ListFeed::entryOf(ItemId id) const
{
    const ResultItem& item = model_.item(id);
    return {id, item.groupNumber(), item.state, item.tag, model_.groupOf(id).approximate};
}

ListFigures figuresOf(const ResultsModel& model)
{
    ListFigures figures;
    figures.rows = model.rowCount();
    figures.items = model.itemCount();
    figures.groups = model.groupCount();
    figures.hidingFlags = model.hidingFlags();
    figures.ticked = model.inView(Mark::ticked);
    figures.selected = model.inView(Mark::selected);
    figures.grouped = model.isGrouped();
    figures.tickBoxes = model.hasTickBoxes();
    figures.canUndo = model.canUndo();
    figures.canRedo = model.canRedo();
    return figures;
}

}  // namespace kelvane
