#include "ui/list/results_cell.h"

#include <QWindow>

#include "ui/list/results_table.h"

namespace kelvane {

bool ResultsCell::isValid() const
{
    return view_ != nullptr && table() != nullptr && row_ < static_cast<int>(view_->link().rows().count()) &&
           column_ < table()->tableInterface()->columnCount();
}

QAccessibleInterface* ResultsCell::table() const
{
    return view_ != nullptr ? QAccessible::queryAccessibleInterface(view_) : nullptr;
}

QAccessibleInterface* ResultsCell::parent() const
{
    return table();
}

QWindow* ResultsCell::window() const
{
    return view_ != nullptr ? view_->window()->windowHandle() : nullptr;
}

const RowEntry& ResultsCell::entry() const
{
    return view_->link().rows().at(static_cast<Row>(row_));
}

bool ResultsCell::hasTick() const
{
    return isValid() && !isTitle() && column_ == ResultsTable::tickColumn && view_->link().rows().figures().tickBoxes;
}

// The cell that has the focus speaks for its row.
QString ResultsCell::text(QAccessible::Text kind) const
{
    if (!isValid())
        return {};
    const auto& above = *static_cast<const ResultsTable*>(table());
    if (kind == QAccessible::Name)
        return above.textAt(row_, column_);
    if (kind == QAccessible::Description && !isTitle() && column_ == ResultsTable::nameColumn)
        return above.rowDescription(row_);
    return {};
}

QRect ResultsCell::rect() const
{
    return isValid() ? static_cast<const ResultsTable*>(table())->rectAt(row_, column_) : QRect();
}

QAccessible::Role ResultsCell::role() const
{
    return isTitle() ? QAccessible::ColumnHeader : QAccessible::Cell;
}

QAccessible::State ResultsCell::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const QRect visible(view_->viewport()->mapToGlobal(QPoint()), view_->viewport()->size());
    state.offscreen = !isTitle() && !rect().intersects(visible);
    if (isTitle())
        return state;
    state.selectable = true;
    state.focusable = true;
    state.multiSelectable = true;
    state.selected = entry().isSelected();
    state.focused =
        column_ == ResultsTable::nameColumn && view_->hasFocus() && view_->currentRow() == static_cast<Row>(row_);
    state.checkable = hasTick();
    state.checked = hasTick() && entry().isTicked();
    return state;
}

void* ResultsCell::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface && !isTitle())
        return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
}

bool ResultsCell::isSelected() const
{
    return isValid() && !isTitle() && entry().isSelected();
}

QList<QAccessibleInterface*> ResultsCell::columnHeaderCells() const
{
    if (!isValid() || isTitle())
        return {};
    return {table()->tableInterface()->cellAt(-1, column_)};
}

QStringList ResultsCell::actionNames() const
{
    return {hasTick() ? toggleAction() : setFocusAction()};
}

void ResultsCell::doAction(const QString& name)
{
    if (!isValid() || isTitle())
        return;
    if (name == toggleAction() && hasTick())
        view_->toggle(entry().item, Mark::ticked);
    else if (name == setFocusAction())
        view_->goTo(static_cast<Row>(row_), Qt::NoModifier);
}

}  // namespace kelvane
