// The middle of a window: the list and what stands around it.
#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include "ui/list/results_view.h"

namespace kelvane {

class FilterBar;

// Keeps the list's columns in step with its session.
class ResultsPane final : public QWidget {
    Q_OBJECT

public:
    explicit ResultsPane(WindowLink& link, QWidget* parent = nullptr);

    [[nodiscard]] ResultsView& view() const { return *view_; }
    [[nodiscard]] FilterBar& filterBar() const { return *filter_; }
    // Has the columns arranged as they are remembered, and shows them.
    void fetchColumns();
    // Lets the person choose among all properties.
    void askColumns();
    // These from the left; none: the first ones come back.
    void useColumns(const std::vector<std::string>& names);

private:
    void showDialog(const std::vector<ListColumn>& others);
    void findNext(const QString& typed);
    void showColumns(const std::vector<ListColumn>& columns);

    WindowLink& link_;
    FilterBar* filter_;
    bool wentToFound_ = false;  // to the list, while it shows what a filter found
    ResultsView* view_;
    QString sought_;           // what names are to begin with
    QElapsedTimer lastTyped_;  // it
};

}  // namespace kelvane
