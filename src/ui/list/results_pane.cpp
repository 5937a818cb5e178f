#include "ui/list/results_pane.h"

#include <QApplication>
#include <QLineEdit>
#include <QVBoxLayout>

#include "platform/native_text.h"
#include "ui/core/text.h"
#include "ui/list/columns_dialog.h"
#include "ui/list/filter_bar.h"
#include "ui/list/list_header.h"
#include "ui/list/list_memory.h"

namespace kelvane {
namespace {

// From a row on, and round to those before it.
std::optional<Row> rowBeginningWith(Workbench& bench, const QString& beginning, Row from)
{
    const ResultsModel& results = bench.results();
    const Row count = results.rowCount();
    for (Row step = 0; step < count; ++step) {
        const Row row = (from + step) % count;
        const std::u16string name = displayFromNative(results.item(results.itemAt(row)).file.item().name());
        if (toQt(name).startsWith(beginning, Qt::CaseInsensitive))
            return row;
    }
    return std::nullopt;
}

}  // namespace

ResultsPane::ResultsPane(WindowLink& link, QWidget* parent)
    : QWidget(parent), link_(link), filter_(new FilterBar(link, this)), view_(new ResultsView(link, this))
{
    setObjectName(QStringLiteral("resultsPane"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(filter_);
    column->addWidget(view_, 1);
    setFocusProxy(view_);
    connect(filter_, &FilterBar::left, view_, [this] {
        wentToFound_ = wentToFound_ || !filter_->edit().text().isEmpty();
        view_->setFocus();
    });
    connect(filter_, &FilterBar::applied, view_, [this] {
        if (filter_->edit().text().isEmpty() && std::exchange(wentToFound_, false))
            view_->chooseCurrent();
        view_->showCurrentOnceChanged();
    });
    connect(view_, &ResultsView::typed, this, &ResultsPane::findNext);
    connect(&view_->header(), &QHeaderView::sectionMoved, this, [this] { useColumns(view_->header().namesInOrder()); });
    connect(&view_->header(), &ListHeader::widthChosen, this,
            [this](const std::string& name, int width) { ListMemory(link_.desktop().memory).setWidth(name, width); });
    view_->header().setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&view_->header(), &QWidget::customContextMenuRequested, this, &ResultsPane::askColumns);
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
        this,
        [kept = ListMemory(link_.desktop().memory).columns()](Workbench& bench) {
            arrangeColumns(bench, kept);
            return describedColumns(bench);
        },
        [this](const std::vector<ListColumn>& columns) { showColumns(columns); });
}

void ResultsPane::useColumns(const std::vector<std::string>& names)
{
    ListMemory(link_.desktop().memory).choose(names, view_->header().columns());
    if (names.empty())
        view_->header().setColumns({});  // lets go of their widths
    fetchColumns();
}

void ResultsPane::askColumns()
{
    link_.fetch(
        this, [](Workbench& bench) { return furtherColumns(bench); },
        [this](const std::vector<ListColumn>& others) { showDialog(others); });
}

void ResultsPane::showDialog(const std::vector<ListColumn>& others)
{
    auto* const dialog = new ColumnsDialog(view_->header().columns(), others, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        if (dialog->wantsDefaults() || !dialog->chosen().empty())
            useColumns(dialog->chosen());
    });
    link_.boxes().open(dialog);
}

void ResultsPane::findNext(const QString& typed)
{
    const bool goesOn = lastTyped_.isValid() && lastTyped_.elapsed() < 1000;
    sought_ = goesOn ? sought_ + typed : typed;
    lastTyped_.start();
    const Row from = view_->currentRow().value_or(0) + (goesOn ? 0 : 1);
    link_.fetch(
        this, [sought = sought_, from](Workbench& bench) { return rowBeginningWith(bench, sought, from); },
        [this](const std::optional<Row>& row) {
            if (row)
                view_->goTo(*row, Qt::NoModifier);
            else
                QApplication::beep();
        });
}

void ResultsPane::showColumns(const std::vector<ListColumn>& columns)
{
    if (columns == view_->header().columns())
        return;
    view_->header().setColumns(columns, ListMemory(link_.desktop().memory).widths());
    view_->cells().clear();
    view_->columnsChanged();
}

}  // namespace kelvane
