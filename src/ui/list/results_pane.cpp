#include "ui/list/results_pane.h"

#include <QVBoxLayout>

#include "ui/list/list_header.h"

namespace kelvane {

ResultsPane::ResultsPane(WindowLink& link, QWidget* parent)
    : QWidget(parent), link_(link), view_(new ResultsView(link, this))
{
    setObjectName(QStringLiteral("resultsPane"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(view_, 1);
    setFocusProxy(view_);
    connect(&link, &WindowLink::listBegan, this, [this] {
        view_->cells().clear();
        fetchColumns();
    });
    connect(&link, &WindowLink::jobChanged, this, [this](Job job) {
        if (job == Job::none)
            fetchColumns();  // a scan knows its columns at the end
    });
    fetchColumns();
}

void ResultsPane::fetchColumns()
{
    link_.fetch(
        this, [](Workbench& bench) { return describedColumns(bench); },
        [this](const std::vector<ListColumn>& columns) { showColumns(columns); });
}

void ResultsPane::showColumns(const std::vector<ListColumn>& columns)
{
    if (columns == view_->header().columns())
        return;
    view_->header().setColumns(columns);
    view_->cells().clear();
    view_->columnsChanged();
}

}  // namespace kelvane
