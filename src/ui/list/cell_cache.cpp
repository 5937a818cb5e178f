#include "ui/list/cell_cache.h"

#include <algorithm>
#include <unordered_set>

#include "ui/core/shown_values.h"
#include "ui/list/list_columns.h"

namespace kelvane {
namespace {

// Few enough that a tick given meanwhile does not wait for values that are read from many files.
constexpr std::size_t rowsPerRequest = 48;

bool turnsDirection(char16_t unit)
{
    return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069) || unit == 0x200E || unit == 0x200F;
}

}  // namespace

QString shownInOneLine(QString text)
{
    for (qsizetype index = 0; index < text.size(); ++index) {
        QChar& character = text[index];
        const char16_t unit = character.unicode();
        if (character.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
            ++index;
            continue;
        }
        if (unit < 0x20)
            character = QChar(static_cast<char16_t>(0x2400 + unit));
        else if (character.isSurrogate() || unit == 0x7F || (unit >= 0x80 && unit < 0xA0) || unit == 0x2028 ||
                 unit == 0x2029 || turnsDirection(unit))
            character = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

CellCache::Texts CellCache::textsOf(Workbench& bench, const std::vector<ItemId>& items)
{
    Texts texts(items.size());
    const std::vector<PropRef> columns = columnsInView(bench);
    for (std::size_t index = 0; index < items.size(); ++index) {
        if (static_cast<std::uint32_t>(items[index]) >= bench.results().idLimit())
            continue;
        texts[index].group = bench.results().item(items[index]).groupNumber();
        for (const PropRef& column : columns)
            texts[index].texts.append(
                shownInOneLine(shownCell(bench.results().file(items[index]), column, bench.session()->access.source)));
    }
    return texts;
}

CellCache::CellCache(WindowLink& link, QObject* parent) : QObject(parent), link_(link) {}

const QStringList* CellCache::find(ItemId item) const
{
    const auto found = cells_.find(item);
    return found != cells_.end() ? &found->second.texts : nullptr;
}

void CellCache::want(Row first, Row end)
{
    first_ = first;
    end_ = end;
    fetchMissing();
}

void CellCache::wantAlso(ItemId item)
{
    if (std::find(also_.begin(), also_.end(), item) != also_.end())
        return;
    also_.push_back(item);
    if (also_.size() > rowsPerRequest / 2)
        also_.pop_front();
    fetchMissing();
}

void CellCache::clear()
{
    also_.clear();
    ++generation_;
    underWay_ = false;
    cells_.clear();
}

void CellCache::collect(std::vector<ItemId>& items, Row first, Row end) const
{
    for (Row row = first; row < end && items.size() < rowsPerRequest; ++row) {
        const RowEntry& entry = link_.rows().at(row);
        const auto found = cells_.find(entry.item);
        if (found == cells_.end() || found->second.group != entry.group)
            items.push_back(entry.item);
    }
}

std::vector<ItemId> CellCache::missing() const
{
    std::vector<ItemId> items(also_.begin(), also_.end());
    const Row count = link_.rows().count();
    const Row first = std::min(first_, count), end = std::min(end_, count);
    const Row page = end - first;
    collect(items, first, end);
    collect(items, end, std::min(end + page, count));
    collect(items, first - std::min(first, page), first);
    return items;
}

void CellCache::fetchMissing()
{
    if (underWay_)
        return;
    std::vector<ItemId> items = missing();
    if (items.empty())
        return;
    underWay_ = true;
    also_.clear();
    link_.fetchOfList(
        this, [items](Workbench& bench) { return textsOf(bench, items); },
        [this, items, generation = generation_](Texts texts) { take(items, std::move(texts), generation); });
}

void CellCache::take(const std::vector<ItemId>& items, Texts texts, unsigned generation)
{
    if (generation != generation_)
        return;
    underWay_ = false;
    for (std::size_t index = 0; index < items.size(); ++index)
        cells_.insert_or_assign(items[index], std::move(texts[index]));
    dropFarOnes();
    Q_EMIT arrived();
    fetchMissing();
}

void CellCache::dropFarOnes()
{
    const auto columns =
        static_cast<std::size_t>(cells_.empty() ? 1 : std::max<qsizetype>(cells_.begin()->second.texts.size(), 1));
    if (cells_.size() * columns <= mostCells)
        return;
    std::unordered_set<ItemId> near;
    const Row count = link_.rows().count();
    const Row page = end_ - std::min(first_, end_);
    for (Row row = first_ - std::min(first_, page); row < std::min(end_ + page, count); ++row)
        near.insert(link_.rows().at(row).item);
    std::erase_if(cells_, [&](const auto& entry) { return !near.contains(entry.first); });
}

}  // namespace kelvane
