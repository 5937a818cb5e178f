// The list as a screen reader finds it: a table of rows and cells.
#pragma once

#include <QAccessibleWidget>
#include <deque>
#include <unordered_map>

#include "ui/list/results_view.h"

namespace kelvane {

// Have lists be such tables. Any number of times; on the main thread.
void makeResultsAccessible();

// What assistive programs are told of: the current row is another one, texts came, rows changed. Cheap where there are
// no such programs.
void tellCurrent(ResultsView& view);
void tellTexts(ResultsView& view);
void tellRows(ResultsView& view, Row first, Row before, Row after);

// A row of the list is a row here. The first column has the tick boxes, then come those in view from the left; the last
// one tells the group. Above the rows stand the titles, which are children and no rows. A cell is made when somebody
// asks for it, and only so many of the latest ones are kept: the list may have a million rows.
class ResultsTable final : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    static constexpr std::size_t mostCells = 600;
    static constexpr int tickColumn = 0, nameColumn = 1;

    explicit ResultsTable(ResultsView& view);
    ~ResultsTable() override;

    [[nodiscard]] ResultsView& view() const;
    [[nodiscard]] std::size_t cellsHeld() const { return cells_.size(); }
    // Row -1 has the titles.
    [[nodiscard]] QString textAt(int row, int column) const;
    [[nodiscard]] QRect rectAt(int row, int column) const;
    // Among the children.
    [[nodiscard]] int indexOf(int row, int column) const { return (row + 1) * columnCount() + column; }

    void* interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface* focusChild() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

    [[nodiscard]] QAccessibleInterface* caption() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* summary() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* cellAt(int row, int column) const override;
    [[nodiscard]] int rowCount() const override;
    [[nodiscard]] int columnCount() const override;
    [[nodiscard]] QString columnDescription(int column) const override { return textAt(-1, column); }
    [[nodiscard]] QString rowDescription(int row) const override;
    [[nodiscard]] int selectedCellCount() const override;
    [[nodiscard]] QList<QAccessibleInterface*> selectedCells() const override;
    [[nodiscard]] int selectedColumnCount() const override { return 0; }
    [[nodiscard]] QList<int> selectedColumns() const override { return {}; }
    [[nodiscard]] int selectedRowCount() const override;
    [[nodiscard]] QList<int> selectedRows() const override;
    [[nodiscard]] bool isColumnSelected(int /*column*/) const override { return false; }
    [[nodiscard]] bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int /*column*/) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int /*column*/) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent* event) override;

private:
    [[nodiscard]] QString cellText(Row row, int column) const;
    void forgetCells() const;

    mutable std::unordered_map<int, QAccessible::Id> cells_;  // by index
    mutable std::deque<int> inOrder_;                         // the oldest one first
};

}  // namespace kelvane
