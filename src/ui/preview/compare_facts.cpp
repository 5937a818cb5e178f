#include "ui/preview/compare_facts.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "base/desktop_texts/preview.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QStringList namesOf(const ComparedFiles& compared)
{
    QStringList names;
    for (const ComparedFile& file : compared.files)
        for (const Fact& fact : file.facts)
            if (!names.contains(toQt(fact.name)))
                names += toQt(fact.name);
    return names;
}

QString valueOf(const ComparedFile& file, const QString& name)
{
    const auto found =
        std::find_if(file.facts.begin(), file.facts.end(), [&](const Fact& fact) { return toQt(fact.name) == name; });
    return found == file.facts.end() ? QString() : toQt(found->value);
}

bool differs(const QTreeWidgetItem& row)
{
    for (int column = 2; column < row.columnCount(); ++column)
        if (row.text(column) != row.text(1))
            return true;
    return false;
}

void makeBold(QTreeWidgetItem& row)
{
    for (int column = 0; column < row.columnCount(); ++column) {
        QFont font = row.font(column);
        font.setBold(true);
        row.setFont(column, font);
    }
}

}  // namespace

CompareFacts::CompareFacts(QWidget* parent)
    : QWidget(parent),
      table_(new QTreeWidget(this)),
      onlyDifferences_(new QCheckBox(shown(say::compareOnlyDifferences), this))
{
    table_->setObjectName(QStringLiteral("compare.facts"));
    table_->setAccessibleName(shown(say::compareProperties));
    table_->setRootIsDecorated(false);
    table_->setAlternatingRowColors(true);
    onlyDifferences_->setObjectName(QStringLiteral("compare.onlyDifferences"));
    auto* const all = new QVBoxLayout(this);
    all->addWidget(table_, 1);
    all->addWidget(onlyDifferences_);
    connect(onlyDifferences_, &QCheckBox::toggled, this, &CompareFacts::hideEqual);
}

void CompareFacts::show(const ComparedFiles& compared)
{
    QStringList titles{shown(say::previewFactName)};
    for (const ComparedFile& file : compared.files)
        titles += file.name;
    table_->clear();
    table_->setColumnCount(static_cast<int>(titles.size()));
    table_->setHeaderLabels(titles);
    for (const QString& name : namesOf(compared)) {
        QStringList cells{name};
        for (const ComparedFile& file : compared.files)
            cells += valueOf(file, name);
        auto* const row = new QTreeWidgetItem(table_, cells);
        if (differs(*row))
            makeBold(*row);
    }
    table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    hideEqual(onlyDifferences_->isChecked());
}

void CompareFacts::hideEqual(bool on)
{
    for (int i = 0; i < table_->topLevelItemCount(); ++i)
        table_->topLevelItem(i)->setHidden(on && !differs(*table_->topLevelItem(i)));
}

}  // namespace kelvane
