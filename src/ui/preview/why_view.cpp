#include "ui/preview/why_view.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/stage_texts.h"
#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"
#include "ui/core/wrapped_label.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int outcomeColumn = 7, behindName = 2;

QStringList titles()
{
    QStringList list;
    for (const std::string& title : stageTitles())
        list += toQt(title);
    for (QString& title : list)
        title.front() = title.front().toUpper();  // the console's are written small
    list[2] = shown(say::previewWhyThis);
    list[3] = shown(say::previewWhyOther);
    return list;
}

}  // namespace

WhyView::WhyView(QWidget* parent)
    : QWidget(parent),
      against_(new WrappedLabel("preview.whyAgainst", this)),
      stages_(new QTreeWidget(this)),
      lines_(new WrappedLabel("preview.whyLines", this))
{
    stages_->setObjectName(QStringLiteral("preview.why"));
    stages_->setAccessibleName(shown(say::previewWhyName));
    stages_->setHeaderLabels(titles());
    stages_->setRootIsDecorated(false);
    stages_->setAlternatingRowColors(true);
    stages_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    stages_->header()->moveSection(outcomeColumn, behindName);  // exact sizes would push it out of sight
    auto* const all = new QVBoxLayout(this);
    all->addWidget(against_);
    all->addWidget(stages_, 1);
    all->addWidget(lines_);
    clear();
}

void WhyView::clear()
{
    show({});
}

void WhyView::showBusy()
{
    clear();
    against_->setText(shown(say::previewWhyComparing));
    against_->show();
}

void WhyView::show(const WhyMatched& why)
{
    against_->setVisible(!why.other.empty());
    against_->setText(shown(say::previewWhyAgainst, {why.other}));
    stages_->clear();
    for (const auto& row : why.rows) {
        QStringList cells;
        for (const std::string& cell : row)
            cells += toQt(cell);
        new QTreeWidgetItem(stages_, cells);
    }
    stages_->setVisible(!why.rows.empty());
    // Columns that no stage fills are left out.
    for (int column = 0; column < stages_->columnCount(); ++column) {
        bool used = false;
        for (int row = 0; row < stages_->topLevelItemCount(); ++row)
            used = used || !stages_->topLevelItem(row)->text(column).isEmpty();
        stages_->setColumnHidden(column, !used);
    }
    QStringList lines;
    for (const std::string& line : why.lines)
        lines += toQt(line);
    lines_->setText(lines.join(QLatin1Char('\n')));
    lines_->setVisible(!lines.isEmpty());
}

}  // namespace kelvane
