#include "ui/list/list_header.h"

#include <QStandardItemModel>
#include <algorithm>
#include <map>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"

namespace kelvane {

ListHeader::ListHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent), titles_(new QStandardItemModel(this))
{
    setObjectName(QStringLiteral("listHeader"));
    setAccessibleName(shown(desktop_text::headerName));
    setModel(titles_);
    setSectionsMovable(true);
    setFirstSectionMovable(false);
    setSectionsClickable(true);
    setSortIndicatorShown(false);
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setStretchLastSection(false);
    setColumns({});
    connect(this, &QHeaderView::sectionResized, this, [this](int section, int, int width) {
        if (!placing_ && section > 0)
            Q_EMIT widthChosen(columns_[static_cast<std::size_t>(section) - 1].name, width);
    });
}

void ListHeader::setColumns(const std::vector<ListColumn>& columns, const std::map<std::string, int>& kept)
{
    placing_ = true;
    std::map<std::string, int> widths = kept;
    for (std::size_t index = 0; index < columns_.size(); ++index)
        widths[columns_[index].name] = sectionSize(static_cast<int>(index) + 1);
    columns_ = columns;
    titles_->clear();
    titles_->setColumnCount(static_cast<int>(columns.size()) + 1);
    setSectionResizeMode(0, QHeaderView::Fixed);
    resizeSection(0, style()->pixelMetric(QStyle::PM_IndicatorWidth) + 18);
    titles_->setHeaderData(0, Qt::Horizontal, QString());
    for (int section = 1; section < count(); ++section) {
        const ListColumn& column = columns_[static_cast<std::size_t>(section) - 1];
        titles_->setHeaderData(section, Qt::Horizontal, column.title);
        const auto known = widths.find(column.name);
        resizeSection(section, known != widths.end() ? known->second : firstWidth(column));
    }
    placing_ = false;
    Q_EMIT columnsChanged();
}

int ListHeader::firstWidth(const ListColumn& column) const
{
    const int letter = fontMetrics().averageCharWidth();
    const int title = fontMetrics().horizontalAdvance(column.title) + 5 * letter;
    if (column.name == "System.FileName")
        return 30 * letter;
    if (column.name == "System.ItemFolderPathDisplay")
        return 34 * letter;  // so that the size is in sight
    const int sample = fontMetrics().horizontalAdvance(column.sample) + 2 * cellMargin + letter;
    return std::max({title, sample, (column.sample.isEmpty() ? 20 : 12) * letter});
}

std::vector<std::string> ListHeader::namesInOrder() const
{
    std::vector<std::string> names;
    for (int visual = 0; visual < count(); ++visual) {
        const int section = logicalIndex(visual);
        if (section > 0)
            names.push_back(columns_[static_cast<std::size_t>(section) - 1].name);
    }
    return names;
}

std::vector<ColumnSpan> ListHeader::spans() const
{
    std::vector<ColumnSpan> spans;
    for (int visual = 0; visual < count(); ++visual) {
        const int section = logicalIndex(visual);
        if (section <= 0)
            continue;
        const auto column = static_cast<std::size_t>(section) - 1;
        spans.push_back(
            {sectionViewportPosition(section), sectionSize(section), column, columns_[column].rightAligned});
    }
    return spans;
}

int ListHeader::tickWidth() const
{
    return sectionSize(0);
}

}  // namespace kelvane
