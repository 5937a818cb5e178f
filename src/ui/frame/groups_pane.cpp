#include "ui/frame/groups_pane.h"

#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "base/desktop_texts/frame.h"
#include "platform/shell_namespace.h"
#include "ui/core/shown_values.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

// Often enough to follow a scan, seldom enough not to hold it up over a long list.
constexpr int pauseMilliseconds = 500;
constexpr int itemRole = Qt::UserRole;
constexpr int nameColumn = 2;
constexpr int numberColumns[] = {0, 1, 3};

GroupSummary::Big bigOf(const ResultsModel& model, const ResultGroup& group)
{
    GroupSummary::Big big;
    big.number = group.number;
    big.files = group.members.size();
    big.first = group.members.front();
    std::uint64_t most = 0;
    for (const ItemId member : group.members) {
        const std::uint64_t bytes = model.item(member).bytes();
        big.freed += bytes;
        most = std::max(most, bytes);
    }
    big.freed -= most;
    return big;
}

void keepBiggest(std::vector<GroupSummary::Big>& groups)
{
    const auto bigger = [](const GroupSummary::Big& a, const GroupSummary::Big& b) {
        return a.freed != b.freed ? a.freed > b.freed : a.number < b.number;
    };
    const std::size_t kept = std::min(groups.size(), mostBigGroups);
    std::partial_sort(groups.begin(), groups.begin() + static_cast<std::ptrdiff_t>(kept), groups.end(), bigger);
    groups.resize(kept);
}

QTreeWidget* makeTree()
{
    auto* const tree = new QTreeWidget;
    tree->setObjectName(QStringLiteral("groups.biggest"));
    tree->setAccessibleName(shown(desktop_text::groupsBiggest));
    tree->setRootIsDecorated(false);
    tree->setUniformRowHeights(true);
    tree->setAlternatingRowColors(true);
    tree->setHeaderLabels({shown(desktop_text::columnFreed), shown(desktop_text::columnFiles),
                           shown(desktop_text::columnFirstFile), shown(desktop_text::columnGroup)});
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    for (const int column : numberColumns)
        tree->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    return tree;
}

QTreeWidgetItem* rowOf(const GroupSummary::Big& group)
{
    auto* const row = new QTreeWidgetItem(
        {shownSize(group.freed), QLocale().toString(group.files), group.name, QLocale().toString(group.number)});
    row->setData(0, itemRole, QVariant::fromValue(static_cast<std::uint32_t>(group.first)));
    for (const int column : numberColumns)
        row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    return row;
}

}  // namespace

GroupSummary summaryOf(ResultsModel& model, ShellNamespace& shell)
{
    GroupSummary summary;
    model.forEachItem([&](ItemId id) {
        ++summary.files;
        const ResultGroup& group = model.groupOf(id);
        if (group.members.front() != id)
            return;
        summary.biggest.push_back(bigOf(model, group));
        summary.freed += summary.biggest.back().freed;
    });
    summary.groups = summary.biggest.size();
    keepBiggest(summary.biggest);
    for (GroupSummary::Big& group : summary.biggest)
        group.name = toQt(shell.displayName(model.item(group.first).file.item()));
    return summary;
}

GroupsPane::GroupsPane(WindowLink& link)
    : link_(link), sum_(new QLabel(shown(desktop_text::groupsNone))), biggest_(makeTree()), timer_(new QTimer(this))
{
    setObjectName(QStringLiteral("groups.content"));
    sum_->setObjectName(QStringLiteral("groups.sum"));
    sum_->setWordWrap(true);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->addWidget(sum_);
    column->addWidget(biggest_);
    timer_->setSingleShot(true);
    timer_->setInterval(pauseMilliseconds);
    connect(timer_, &QTimer::timeout, this, &GroupsPane::ask);
    connect(&link, &WindowLink::figuresChanged, this, &GroupsPane::listChanged);
    const auto goTo = [this](const QTreeWidgetItem* row) {
        if (row != nullptr)
            Q_EMIT link_.itemWanted(ItemId{row->data(0, itemRole).toUInt()});
    };
    connect(biggest_, &QTreeWidget::itemClicked, this, goTo);
    connect(biggest_, &QTreeWidget::itemActivated, this, goTo);
}

void GroupsPane::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (stale_)
        ask();
}

// Ticks and selections change figures as well, and nothing here.
void GroupsPane::listChanged()
{
    const ListFigures& figures = link_.rows().figures();
    if (figures.items == items_ && figures.groups == groups_)
        return;
    items_ = figures.items;
    groups_ = figures.groups;
    stale_ = true;
    if (isVisible() && !timer_->isActive())
        timer_->start();
}

void GroupsPane::ask()
{
    stale_ = false;
    link_.fetch(
        this, [](Workbench& bench) { return summaryOf(bench.results(), bench.platform().shell()); },
        [this](const GroupSummary& summary) { show(summary); });
}

void GroupsPane::show(const GroupSummary& summary)
{
    biggest_->clear();
    if (summary.groups == 0) {
        sum_->setText(shown(desktop_text::groupsNone));
        return;
    }
    const auto number = [](std::uint64_t value) { return QLocale().toString(value).toStdString(); };
    sum_->setText(
        shown(desktop_text::groupsSummary, {number(summary.groups), number(summary.files),
                                            number(summary.files - summary.groups), shownSizeText({summary.freed})}));
    QList<QTreeWidgetItem*> rows;
    for (const GroupSummary::Big& group : summary.biggest)
        rows.push_back(rowOf(group));
    biggest_->addTopLevelItems(rows);
    for (int column = 0; column < biggest_->columnCount(); ++column)
        biggest_->resizeColumnToContents(column);
}

}  // namespace kelvane
