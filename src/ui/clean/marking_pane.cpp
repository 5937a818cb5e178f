#include "ui/clean/marking_pane.h"

#include <QHeaderView>
#include <QLabel>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "base/desktop_texts/clean.h"
#include "ui/clean/text_table_model.h"
#include "ui/clean/text_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/commands.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int tickDelayMs = 250;  // behind the last tick
constexpr std::size_t mostFolders = 20;

}  // namespace

MarkingPane::MarkingPane(WindowLink& link, const CommandSet& commands)
    : link_(link),
      sum_(new QLabel(shown(say::markingNothing))),
      lost_(new QLabel),
      folders_(
          new TextTableModel({shown(say::markingFolder), shown(say::markingItems), shown(say::markingSize)}, this)),
      delay_(new QTimer(this))
{
    setObjectName(QStringLiteral("markingPane"));
    sum_->setObjectName(QStringLiteral("markingSum"));
    sum_->setWordWrap(true);
    lost_->setObjectName(QStringLiteral("markingLost"));
    lost_->setWordWrap(true);
    makeWarning(*lost_);
    lost_->hide();
    delay_->setSingleShot(true);
    delay_->setInterval(tickDelayMs);
    connect(delay_, &QTimer::timeout, this, &MarkingPane::askFolders);
    connect(&link, &WindowLink::figuresChanged, delay_, qOverload<>(&QTimer::start));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(sum_);
    layout->addWidget(lost_);
    layout->addWidget(makeFolders(), 1);
    layout->addWidget(makeButtons(commands));
}

QTreeView* MarkingPane::makeFolders()
{
    auto* const table = new QTreeView;
    table->setObjectName(QStringLiteral("markingFolders"));
    table->setAccessibleName(shown(say::markingFoldersName));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->setModel(folders_);
    table->header()->setStretchLastSection(false);
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    table->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    return table;
}

// The commands themselves, so that they are enabled when these can be given.
QWidget* MarkingPane::makeButtons(const CommandSet& commands)
{
    auto* const line = new QWidget;
    auto* const layout = new QGridLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    int place = 0;
    for (const auto& [name, text] : {std::pair("mark.wizard", say::markingWizard),
                                     {"mark.invert", say::markingInvert},
                                     {"mark.clear", say::markingClear},
                                     {"view.ticked", say::markingShow},
                                     {"clean.start", say::markingCleanUp}}) {
        QAction* const action = commands.find(QString::fromLatin1(name));
        if (action == nullptr)
            continue;
        auto* const button = new QToolButton;
        button->setObjectName(QStringLiteral("pane.") + QString::fromLatin1(name));
        button->setText(shown(text).remove(QLatin1Char('&')));
        button->setAccessibleName(button->text());
        button->setToolTip(action->toolTip());
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setEnabled(action->isEnabled());
        connect(button, &QToolButton::clicked, action, &QAction::trigger);
        connect(action, &QAction::changed, button, [button, action] { button->setEnabled(action->isEnabled()); });
        layout->addWidget(button, place / 2, place % 2);
        ++place;
    }
    return line;
}

void MarkingPane::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    delay_->start();
}

void MarkingPane::showSums()
{
    const ListFigures& figures = link_.rows().figures();
    const MarkSum& marked = figures.tickBoxes ? figures.ticked : figures.selected;
    sum_->setText(marked.items == 0 ? shown(say::markingNothing)
                                    : shown(say::markingSum, {countedItems(marked.items).toStdString(),
                                                              sizeShown(marked.bytes).toStdString()}));
    const std::uint32_t lost = marked.items == 0 ? 0 : groupsWhollyMarked(link_.rows());
    lost_->setVisible(lost > 0);
    lost_->setText(lost > 0 ? shown(say::markingGroupsLost, {countedGroups(lost).toStdString()}) : QString());
}

// Not while nobody sees it: every row is looked at.
void MarkingPane::askFolders()
{
    if (!isVisible())
        return;
    showSums();
    again_ = asked_;
    if (asked_)
        return;
    asked_ = true;
    link_.fetch(
        this, [](Workbench& bench) { return marksByFolder(bench.results(), mostFolders); },
        [this](const MarksByFolder& marks) {
            asked_ = false;
            takeFolders(marks);
            if (again_)
                delay_->start();
        });
}

void MarkingPane::takeFolders(const MarksByFolder& marks)
{
    std::vector<QStringList> rows;
    for (const FolderMarks& folder : marks.top)
        rows.push_back({pathShown(std::string_view(folder.folder)), QString::number(folder.sum.items),
                        sizeShown(folder.sum.bytes)});
    if (marks.others > 0)
        rows.push_back({shown(say::markingOtherFolders, {std::to_string(marks.others)})});
    folders_->setRows(std::move(rows));
}

}  // namespace kelvane
