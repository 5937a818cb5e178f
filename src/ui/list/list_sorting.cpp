#include "ui/list/list_sorting.h"

#include <QApplication>
#include <algorithm>

#include "base/desktop_texts/list.h"
#include "results/result_sort.h"
#include "ui/core/window_link.h"

namespace kelvane {

ListSorting::ListSorting(WindowLink& link, ListHeader& header) : QObject(&header), link_(link), header_(header)
{
    connect(&header, &QHeaderView::sectionClicked, this, [this](int section) {
        if (section > 0)
            sortBy(header_.columns()[static_cast<std::size_t>(section) - 1].name,
                   QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier));
    });
    connect(&header, &ListHeader::columnsChanged, this, &ListSorting::showKeys);
    connect(&link, &WindowLink::listBegan, this, [this] {
        keys_.clear();
        showKeys();
    });
}

void ListSorting::addCommands(const FrameParts& parts)
{
    namespace say = desktop_text;
    QAction* grouped = nullptr;
    grouped = parts.commands.add({.name = "view.keepGrouped",
                                  .label = say::listKeepGrouped,
                                  .menu = MenuId::view,
                                  .run = [this] { keepGrouped(!grouped_); },
                                  .beginsSection = true,
                                  .checkable = true});
    grouped->setChecked(grouped_);
    parts.commands.add({.name = "view.unsorted",
                        .label = say::listUnsorted,
                        .menu = MenuId::view,
                        .run = [this] { unsort(); },
                        .when = when::hasItems});
}

void ListSorting::sortBy(const std::string& column, bool further)
{
    const auto there = std::find_if(keys_.begin(), keys_.end(), [&](const Key& key) { return key.column == column; });
    const Key key{column, there == keys_.end() || !there->ascending};
    if (!further)
        keys_ = {key};
    else if (there != keys_.end())
        *there = key;
    else
        keys_.push_back(key);
    showKeys();
    sort();
}

void ListSorting::unsort()
{
    keys_.clear();
    showKeys();
    sort();
}

void ListSorting::keepGrouped(bool on)
{
    grouped_ = on;
    sort();
}

void ListSorting::showKeys()
{
    const auto& columns = header_.columns();
    const auto first = std::find_if(columns.begin(), columns.end(), [this](const ListColumn& column) {
        return !keys_.empty() && column.name == keys_.front().column;
    });
    header_.setSortIndicatorShown(first != columns.end());
    if (first != columns.end())
        header_.setSortIndicator(static_cast<int>(first - columns.begin()) + 1,
                                 keys_.front().ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void ListSorting::sort()
{
    if (cancel_)
        cancel_->cancel();
    cancel_ = std::make_shared<CancelFlag>();
    link_.run([keys = keys_, grouped = grouped_ || keys_.empty(), cancel = cancel_](Workbench& bench) {
        if (bench.session() == nullptr)
            return;
        std::vector<SortKey> wanted;
        for (const Key& key : keys)
            if (const PropRef property = bench.session()->access.catalogue.byName(key.column))
                wanted.push_back({property, key.ascending});
        static_cast<void>(sortResults(bench.results(), wanted, grouped ? GroupedOrder::yes : GroupedOrder::no,
                                      bench.session()->access.source, *cancel));
    });
}

}  // namespace kelvane
