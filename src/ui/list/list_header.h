// The titles of the list's columns: dragged into another order, clicked to sort.
#pragma once

#include <QHeaderView>
#include <map>
#include <string>
#include <vector>

#include "ui/list/list_columns.h"
#include "ui/list/row_painter.h"

class QStandardItemModel;

namespace kelvane {

// Section 0 is that of tick boxes, which stays in front; section n + 1 is column n.
class ListHeader final : public QHeaderView {
    Q_OBJECT

public:
    explicit ListHeader(QWidget* parent);

    // As wide as they were, else as wide as said, else as their kind wants it.
    void setColumns(const std::vector<ListColumn>& columns, const std::map<std::string, int>& kept = {});
    [[nodiscard]] const std::vector<ListColumn>& columns() const { return columns_; }
    // The columns as they stand from the left, whatever order they came in.
    [[nodiscard]] std::vector<std::string> namesInOrder() const;
    // In the coordinates of the viewport below.
    [[nodiscard]] std::vector<ColumnSpan> spans() const;
    [[nodiscard]] int tickWidth() const;

Q_SIGNALS:
    void columnsChanged();
    void widthChosen(const std::string& name, int width);  // by the person

private:
    [[nodiscard]] int firstWidth(const ListColumn& column) const;

    QStandardItemModel* titles_;
    std::vector<ListColumn> columns_;
    bool placing_ = false;  // sections that change now are not changed by the person
};

}  // namespace kelvane
