// The middle of a window: the list and what stands around it.
#pragma once

#include <QWidget>

#include "ui/list/results_view.h"

namespace kelvane {

// Keeps the list's columns in step with its session.
class ResultsPane final : public QWidget {
    Q_OBJECT

public:
    explicit ResultsPane(WindowLink& link, QWidget* parent = nullptr);

    [[nodiscard]] ResultsView& view() const { return *view_; }
    // Asks which columns are in view, and shows them.
    void fetchColumns();

private:
    void showColumns(const std::vector<ListColumn>& columns);

    WindowLink& link_;
    ResultsView* view_;
};

}  // namespace kelvane
