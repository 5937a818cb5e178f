#include "ui/list/results_table.h"

#include <algorithm>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"
#include "ui/list/list_header.h"
#include "ui/list/results_cell.h"

namespace kelvane {
namespace {

QAccessibleInterface* tableOf(const QString& /*className*/, QObject* object)
{
    auto* const view = qobject_cast<ResultsView*>(object);
    return view != nullptr ? new ResultsTable(*view) : nullptr;
}

void tellOfCurrent(ResultsView& view, QAccessible::Event what)
{
    const auto* const table = dynamic_cast<const ResultsTable*>(QAccessible::queryAccessibleInterface(&view));
    if (table == nullptr || !view.currentRow())
        return;
    QAccessibleEvent event(&view, what);
    event.setChild(table->indexOf(static_cast<int>(*view.currentRow()), ResultsTable::nameColumn));
    QAccessible::updateAccessibility(&event);
}

// Marks change the rows that they are at; whatever changes more may have put other files there.
constexpr Row mostChangedOneByOne = 64;

}  // namespace

void makeResultsAccessible()
{
    QAccessible::installFactory(tableOf);
}

void tellCurrent(ResultsView& view)
{
    if (QAccessible::isActive() && view.hasFocus())
        tellOfCurrent(view, QAccessible::Focus);
}

void tellTexts(ResultsView& view)
{
    if (QAccessible::isActive() && view.hasFocus())
        tellOfCurrent(view, QAccessible::NameChanged);
}

void tellRows(ResultsView& view, Row first, Row before, Row after)
{
    if (!QAccessible::isActive())
        return;
    using Change = QAccessibleTableModelChangeEvent;
    Change change(&view, before == after && after <= mostChangedOneByOne ? Change::DataChanged : Change::ModelReset);
    change.setFirstRow(static_cast<int>(first));
    change.setLastRow(static_cast<int>(first + after) - 1);
    QAccessible::updateAccessibility(&change);
    tellCurrent(view);
}

ResultsTable::ResultsTable(ResultsView& view) : QAccessibleWidget(&view, QAccessible::Table) {}

ResultsTable::~ResultsTable()
{
    forgetCells();
}

ResultsView& ResultsTable::view() const
{
    return *static_cast<ResultsView*>(widget());
}

void* ResultsTable::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State ResultsTable::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.multiSelectable = true;
    state.extSelectable = true;
    return state;
}

int ResultsTable::rowCount() const
{
    return static_cast<int>(view().link().rows().count());
}

int ResultsTable::columnCount() const
{
    return view().header().count() + 1;
}

int ResultsTable::childCount() const
{
    return indexOf(rowCount(), 0);
}

QAccessibleInterface* ResultsTable::child(int index) const
{
    return index >= 0 && index < childCount() ? cellAt(index / columnCount() - 1, index % columnCount()) : nullptr;
}

int ResultsTable::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* const cell = dynamic_cast<const ResultsCell*>(child);
    return cell != nullptr && cell->belongsTo(view()) ? indexOf(cell->rowIndex(), cell->columnIndex()) : -1;
}

QAccessibleInterface* ResultsTable::cellAt(int row, int column) const
{
    if (row < -1 || row >= rowCount() || column < 0 || column >= columnCount())
        return nullptr;
    const int index = indexOf(row, column);
    if (const auto found = cells_.find(index); found != cells_.end())
        return QAccessible::accessibleInterface(found->second);
    while (inOrder_.size() >= mostCells) {
        QAccessible::deleteAccessibleInterface(cells_.at(inOrder_.front()));
        cells_.erase(inOrder_.front());
        inOrder_.pop_front();
    }
    auto* const cell = new ResultsCell(view(), row, column);  // the registry owns it
    cells_[index] = QAccessible::registerAccessibleInterface(cell);
    inOrder_.push_back(index);
    return cell;
}

void ResultsTable::forgetCells() const
{
    for (const auto& [index, id] : cells_)
        QAccessible::deleteAccessibleInterface(id);
    cells_.clear();
    inOrder_.clear();
}

QAccessibleInterface* ResultsTable::childAt(int x, int y) const
{
    const QPoint point = view().viewport()->mapFromGlobal(QPoint(x, y));
    if (!view().viewport()->rect().contains(point))
        return nullptr;
    const auto row = view().rowAt(point);
    if (!row)
        return nullptr;
    for (int column = 0; column < columnCount(); ++column)
        if (rectAt(static_cast<int>(*row), column).contains(x, y))
            return cellAt(static_cast<int>(*row), column);
    return nullptr;
}

QAccessibleInterface* ResultsTable::focusChild() const
{
    const auto row = view().currentRow();
    return row && view().hasFocus() ? cellAt(static_cast<int>(*row), nameColumn) : nullptr;
}

QString ResultsTable::textAt(int row, int column) const
{
    const auto& columns = view().header().columns();
    const std::vector<ColumnSpan> spans = view().header().spans();
    if (row >= 0)
        return row < rowCount() ? cellText(static_cast<Row>(row), column) : QString();
    if (column == tickColumn)
        return shown(desktop_text::listTickColumn);
    const auto place = static_cast<std::size_t>(column) - 1;
    return place < spans.size() ? columns[spans[place].column].title : shown(desktop_text::listGroupColumn);
}

QString ResultsTable::cellText(Row row, int column) const
{
    const RowEntry& entry = view().link().rows().at(row);
    if (column == tickColumn)
        return view().link().rows().figures().tickBoxes
                   ? shown(entry.isTicked() ? desktop_text::listTicked : desktop_text::listNotTicked)
                   : QString();
    const std::vector<ColumnSpan> spans = view().header().spans();
    const auto place = static_cast<std::size_t>(column) - 1;
    if (place >= spans.size())
        return view().groupText(row);
    const QStringList* const texts = view().cells().find(entry.item);
    if (texts == nullptr)
        view().cells().wantAlso(entry.item);
    return texts != nullptr ? texts->value(static_cast<qsizetype>(spans[place].column)) : QString();
}

// All of a row in one sentence.
QString ResultsTable::rowDescription(int row) const
{
    QStringList parts;
    for (int column = 0; column < columnCount(); ++column)
        if (const QString text = textAt(row, column); !text.isEmpty())
            parts << text;
    return parts.join(QStringLiteral(", "));
}

QRect ResultsTable::rectAt(int row, int column) const
{
    const ListHeader& header = view().header();
    const std::vector<ColumnSpan> spans = header.spans();
    const auto place = static_cast<std::size_t>(column) - 1;
    QRect rect = row < 0 ? QRect(0, 0, header.width(), header.height()) : view().rectOf(static_cast<Row>(row));
    if (column == tickColumn && row >= 0)
        rect = view().tickRectOf(static_cast<Row>(row));
    else if (column == tickColumn)
        rect.setWidth(header.tickWidth());
    else if (place < spans.size() && !view().showsThumbnails())
        rect = QRect(spans[place].left, rect.top(), spans[place].width, rect.height());
    const QWidget& below = row < 0 ? *header.viewport() : *view().viewport();
    return {below.mapToGlobal(rect.topLeft()), rect.size()};
}

int ResultsTable::selectedRowCount() const
{
    return static_cast<int>(view().link().rows().figures().selected.items);
}

int ResultsTable::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

QList<int> ResultsTable::selectedRows() const
{
    QList<int> rows;
    for (int row = 0; row < rowCount() && rows.size() < selectedRowCount(); ++row)
        if (isRowSelected(row))
            rows << row;
    return rows;
}

// No more than are kept.
QList<QAccessibleInterface*> ResultsTable::selectedCells() const
{
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows())
        for (int column = 0; column < columnCount(); ++column) {
            if (static_cast<std::size_t>(cells.size()) >= mostCells)
                return cells;
            cells << cellAt(row, column);
        }
    return cells;
}

bool ResultsTable::isRowSelected(int row) const
{
    return row >= 0 && row < rowCount() && view().link().rows().at(static_cast<Row>(row)).isSelected();
}

bool ResultsTable::selectRow(int row)
{
    if (row < 0 || row >= rowCount())
        return false;
    view().goTo(static_cast<Row>(row), Qt::NoModifier);
    return true;
}

bool ResultsTable::unselectRow(int row)
{
    if (!isRowSelected(row))
        return false;
    view().toggle(view().link().rows().at(static_cast<Row>(row)).item, Mark::selected);
    return true;
}

void ResultsTable::modelChange(QAccessibleTableModelChangeEvent* event)
{
    if (event->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged)
        forgetCells();
}

}  // namespace kelvane
