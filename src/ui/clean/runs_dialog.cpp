#include "ui/clean/runs_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "base/desktop_texts/clean.h"
#include "ui/clean/boxes.h"
#include "ui/clean/taking_back.h"
#include "ui/clean/text_table_model.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

template <class Line>
std::vector<QStringList> cellsOf(const std::vector<Line>& lines)
{
    std::vector<QStringList> rows;
    rows.reserve(lines.size());
    for (const Line& line : lines)
        rows.push_back(line.cells);
    return rows;
}

}  // namespace

RunsDialog::RunsDialog(WindowLink& link)
    : QDialog(topOf(link)),
      link_(link),
      runModel_(new TextTableModel(runTitles(), this)),
      itemModel_(new TextTableModel(runItemTitles(), this)),
      runTable_(makeTable("runsTable", *runModel_, say::runsList)),
      itemTable_(makeTable("runItemsTable", *itemModel_, say::runsItemList)),
      none_(new QLabel(shown(say::runsNone)))
{
    setObjectName(QStringLiteral("earlierRuns"));
    setWindowTitle(shown(say::runsTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    none_->setObjectName(QStringLiteral("runsNone"));
    none_->setWordWrap(true);
    none_->hide();
    itemTable_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    itemTable_->header()->resizeSection(0, 520);
    auto* const parts = new QSplitter(Qt::Vertical);
    parts->addWidget(runTable_);
    parts->addWidget(itemTable_);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(none_);
    layout->addWidget(parts);
    layout->addWidget(makeButtons());
    resize(800, 560);
    connect(runTable_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &RunsDialog::readItems);
    connect(itemTable_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &RunsDialog::enableButtons);
    connect(&link, &WindowLink::jobChanged, this, [this](Job job) {
        enableButtons();
        if (job == Job::none)
            read();
    });
    enableButtons();
    read();
}

QTreeView* RunsDialog::makeTable(const char* name, TextTableModel& model, TextId title)
{
    auto* const table = new QTreeView;
    table->setObjectName(QString::fromLatin1(name));
    table->setAccessibleName(shown(title));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setModel(&model);
    return table;
}

QWidget* RunsDialog::makeButtons()
{
    auto* const buttons = new QDialogButtonBox(this);  // a default button needs its dialog
    takeAll_ = buttons->addButton(shown(say::runsTakeBackAll), QDialogButtonBox::ActionRole);
    takeAll_->setObjectName(QStringLiteral("runsTakeBackAll"));
    connect(takeAll_, &QPushButton::clicked, this, [this] { takeBackChosen(false); });
    takeItems_ = buttons->addButton(shown(say::runsTakeBackItems), QDialogButtonBox::ActionRole);
    takeItems_->setObjectName(QStringLiteral("runsTakeBackItems"));
    connect(takeItems_, &QPushButton::clicked, this, [this] { takeBackChosen(true); });
    QPushButton* const close = buttons->addButton(shown(say::closeDialog), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("runsClose"));
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return buttons;
}

void RunsDialog::read()
{
    link_.fetch(
        this, [](Workbench& bench) { return earlierRuns(bench); },
        [this](Result<std::vector<RunLine>> runs) {
            none_->setText(runs ? shown(say::runsNone)
                                : shown(say::runsUnreadable, {errorShown(runs.error()).toStdString()}));
            takeRuns(runs ? *std::move(runs) : std::vector<RunLine>());
        });
}

void RunsDialog::takeRuns(std::vector<RunLine> runs)
{
    const RunLine* const before = current();
    const RunNumber wanted = before != nullptr ? before->number : RunNumber{};
    runs_ = std::move(runs);
    showItems({});
    runModel_->setRows(cellsOf(runs_));
    for (int column = 0; column < runModel_->columnCount(); ++column)
        runTable_->resizeColumnToContents(column);
    none_->setVisible(runs_.empty());
    int row = 0;
    for (std::size_t at = 0; at < runs_.size(); ++at)
        if (runs_[at].number == wanted)
            row = static_cast<int>(at);
    if (!runs_.empty())
        runTable_->setCurrentIndex(runModel_->index(row, 0));
    enableButtons();
}

void RunsDialog::readItems()
{
    const RunLine* const line = current();
    if (line == nullptr)
        return;
    const RunNumber run = line->number;
    showItems({});  // those of another run must not be taken for this one's
    link_.fetch(
        this, [run](Workbench& bench) { return itemsOfRun(bench, run); },
        [this, run](std::vector<RunItemLine> items) { takeItems(run, std::move(items)); });
    enableButtons();
}

void RunsDialog::takeItems(RunNumber run, std::vector<RunItemLine> items)
{
    const RunLine* const line = current();
    if (line == nullptr || line->number != run)
        return;  // another run was chosen meanwhile
    showItems(std::move(items));
    enableButtons();
}

void RunsDialog::showItems(std::vector<RunItemLine> items)
{
    itemModel_->setRows(cellsOf(items));
    items_ = std::move(items);
}

const RunLine* RunsDialog::current() const
{
    const QModelIndex index = runTable_->currentIndex();
    const auto row = static_cast<std::size_t>(index.row());
    return index.isValid() && row < runs_.size() ? &runs_[row] : nullptr;
}

void RunsDialog::enableButtons()
{
    const RunLine* const line = current();
    const bool can = line != nullptr && line->canUndo && link_.job() == Job::none;
    takeAll_->setEnabled(can);
    takeItems_->setEnabled(can && canTakeBackSelected());
}

bool RunsDialog::canTakeBackSelected() const
{
    const QItemSelection selected = itemTable_->selectionModel()->selection();
    return std::any_of(selected.begin(), selected.end(), [this](const QItemSelectionRange& range) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            if (items_.at(static_cast<std::size_t>(row)).canUndo)
                return true;
        return false;
    });
}

void RunsDialog::takeBackChosen(bool itemsOnly)
{
    const RunLine* const line = current();
    if (line == nullptr)
        return;
    std::set<std::filesystem::path> items;
    if (itemsOnly)
        for (const QModelIndex& index : itemTable_->selectionModel()->selectedRows())
            items.insert(items_.at(static_cast<std::size_t>(index.row())).path);
    if (itemsOnly && items.empty())
        return;
    link_.run([run = line->number, items](Workbench& bench) { takeBack(bench, run, items); });
}

}  // namespace kelvane
