#include "ui/list/list_layout.h"

#include <algorithm>

namespace kelvane {

void ListLayout::rebuild(const RowMirror& rows)
{
    grouped_ = rows.figures().grouped;
    starts_.clear();
    const Row count = rows.count();
    for (Row row = 0; row < count; ++row) {
        if (row == 0 || (grouped_ && rows.beginsGroup(row)))
            starts_.push_back(row);
    }
    starts_.push_back(count);
    stack();
}

void ListLayout::measure(const ListMeasures& measures)
{
    if (measures_ == measures)
        return;
    measures_ = measures;
    stack();
}

int ListLayout::linesOf(std::size_t section) const
{
    const int rows = static_cast<int>(endRow(section) - firstRow(section));
    return (rows + measures_.perLine - 1) / measures_.perLine;
}

void ListLayout::stack()
{
    tops_.clear();
    tops_.reserve(starts_.size());
    int top = 0;
    for (std::size_t section = 0; section < sectionCount(); ++section) {
        tops_.push_back(top);
        top += headingHeight() + linesOf(section) * measures_.lineHeight;
    }
    tops_.push_back(top);
}

std::size_t ListLayout::sectionOf(Row row) const
{
    const auto after = std::upper_bound(starts_.begin(), starts_.end() - 1, row);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - starts_.begin() - 1, 0));
}

std::size_t ListLayout::sectionAt(int y) const
{
    const auto after = std::upper_bound(tops_.begin(), tops_.end() - 1, y);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(after - tops_.begin() - 1, 0));
}

int ListLayout::lineTop(Row row) const
{
    const std::size_t section = sectionOf(row);
    const int line = static_cast<int>(row - firstRow(section)) / measures_.perLine;
    return tops_[section] + headingHeight() + line * measures_.lineHeight;
}

int ListLayout::placeInLine(Row row) const
{
    return static_cast<int>(row - firstRow(sectionOf(row))) % measures_.perLine;
}

std::optional<ListLayout::Spot> ListLayout::at(int y, int place) const
{
    if (y < 0 || y >= height() || place < 0 || place >= measures_.perLine)
        return std::nullopt;
    const std::size_t section = sectionAt(y);
    const int below = y - tops_[section] - headingHeight();
    if (below < 0)
        return Spot{section};
    const int index = below / measures_.lineHeight * measures_.perLine + place;
    const Row row = firstRow(section) + static_cast<Row>(index);
    return row < endRow(section) ? std::optional(Spot{section, row}) : std::nullopt;
}

}  // namespace kelvane
