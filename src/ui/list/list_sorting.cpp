#include "ui/list/list_sorting.h"

#include <QApplication>
#include <algorithm>
#include <utility>

#include "base/desktop_texts/list.h"
#include "results/result_sort.h"
#include "ui/core/window_link.h"
#include "ui/list/list_memory.h"
#include "ui/list/sort_menu.h"

namespace kelvane {

ListSorting::ListSorting(WindowLink& link, ListHeader& header)
    : QObject(&header), link_(link), header_(header), grouped_(ListMemory(link.desktop().memory).keepsGroups())
{
    connect(&header, &QHeaderView::sectionClicked, this, [this](int section) {
        if (section > 0)
            sortBy(header_.columns()[static_cast<std::size_t>(section) - 1].name,
                   QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier));
    });
    connect(&header, &ListHeader::columnsChanged, this, &ListSorting::showKeys);
    connect(&link, &WindowLink::listBegan, this, [this] {
        fresh_ = true;
        keys_.clear();
        showKeys();
    });
    connect(&link, &WindowLink::jobChanged, this, [this](Job job) {
        if (job == Job::none && std::exchange(fresh_, false))
            sortAsKept();
    });
    connect(&link, &WindowLink::closeAsked, this, [this] {
        if (cancel_)
            cancel_->cancel();
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
    addSortMenu(parts, *this, header_);
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
    useKeys();
}

void ListSorting::turn(bool ascending)
{
    if (keys_.empty() || keys_.front().ascending == ascending)
        return;
    keys_.front().ascending = ascending;
    useKeys();
}

void ListSorting::useKeys()
{
    showKeys();
    sort();
    rememberOrder();
}

void ListSorting::unsort()
{
    keys_.clear();
    showKeys();
    sort();
    link_.desktop().memory.setSortOrder({});
}

void ListSorting::keepGrouped(bool on)
{
    grouped_ = on;
    ListMemory(link_.desktop().memory).setKeepsGroups(on);
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

// A newer sorting ends the one that is under way.
std::shared_ptr<CancelFlag> ListSorting::beginSorting()
{
    if (cancel_)
        cancel_->cancel();
    cancel_ = std::make_shared<CancelFlag>();
    return cancel_;
}

void ListSorting::sortBy(Workbench& bench, const std::vector<Key>& keys, bool grouped, const CancelFlag& cancel)
{
    if (bench.session() == nullptr)
        return;
    const PropertyAccess& access = bench.session()->access;
    std::vector<SortKey> wanted;
    for (const Key& key : keys)
        if (const PropRef property = access.catalogue.byName(key.column))
            wanted.push_back({property, key.ascending});
    static_cast<void>(
        sortResults(bench.results(), wanted, grouped ? GroupedOrder::yes : GroupedOrder::no, access.source, cancel));
}

void ListSorting::sort()
{
    link_.run([keys = keys_, grouped = grouped_ || keys_.empty(), cancel = beginSorting()](Workbench& bench) {
        sortBy(bench, keys, grouped, *cancel);
    });
}

// By the properties' own keys, which only the catalogue knows.
void ListSorting::rememberOrder()
{
    link_.fetch(
        this,
        [keys = keys_](Workbench& bench) {
            std::vector<StoredSortKey> stored;
            for (const Key& key : keys)
                if (const PropRef property =
                        bench.session() != nullptr ? bench.session()->access.catalogue.byName(key.column) : PropRef())
                    stored.push_back({property.info->key, key.ascending});
            return stored;
        },
        [this](std::vector<StoredSortKey> stored) {
            if (!stored.empty())
                link_.desktop().memory.setSortOrder(std::move(stored));
        });
}

// What was clicked while the list was filled goes before what is remembered: it is newer.
void ListSorting::sortAsKept()
{
    if (!keys_.empty())
        return sort();
    const std::vector<StoredSortKey>& stored = link_.desktop().memory.sortOrder();
    if (stored.empty())
        return;
    const auto cancel = beginSorting();
    link_.fetchOfList(
        this,
        [stored, grouped = grouped_, cancel](Workbench& bench) {
            std::vector<Key> keys = keysOf(bench.session()->access.catalogue, stored);
            if (!keys.empty())
                sortBy(bench, keys, grouped, *cancel);
            return keys;
        },
        [this, cancel](const std::vector<Key>& keys) {
            if (cancel->cancelled())
                return;  // the person sorted by something else meanwhile
            keys_ = keys;
            showKeys();
        });
}

std::vector<ListSorting::Key> ListSorting::keysOf(const PropertyCatalogue& catalogue,
                                                  const std::vector<StoredSortKey>& stored)
{
    std::vector<PropRef> known;
    for (const std::string& name : catalogue.names())
        known.push_back(catalogue.byName(name));
    std::vector<Key> keys;
    for (const StoredSortKey& key : stored) {
        const auto found = std::find_if(known.begin(), known.end(), [&](const PropRef& property) {
            return property && property.info->key == key.property;
        });
        if (found != known.end())
            keys.push_back({std::string(found->info->name), key.ascending});
    }
    return keys;
}

}  // namespace kelvane
