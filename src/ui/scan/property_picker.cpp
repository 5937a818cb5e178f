#include "ui/scan/property_picker.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/scan/named_sets.h"

namespace kelvane {
namespace {

constexpr int nameRole = Qt::UserRole;
constexpr QSize usualSize{620, 520};

QString nameOf(const QTreeWidgetItem& item)
{
    return item.data(0, nameRole).toString();
}

bool holdsWords(const QTreeWidgetItem& item, const QStringList& words)
{
    const QString text = item.text(0) + u' ' + item.text(1) + u' ' + nameOf(item);
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

QTreeWidgetItem* addItem(QTreeWidgetItem& kind, const PropertyRow& row)
{
    auto* const item = new QTreeWidgetItem(&kind, {row.label, row.description});
    item->setData(0, nameRole, row.name);
    item->setToolTip(0, row.name);
    item->setToolTip(1, item->text(1));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    return item;
}

}  // namespace

PropertyPicker::PropertyPicker(const Desktop& desktop, const std::vector<PropertyRow>& rows, const QString& chosen,
                               QWidget* parent)
    : QDialog(parent), tree_(new QTreeWidget(this)), summary_(new QLabel(this))
{
    setObjectName(QStringLiteral("scan.picker"));
    setWindowTitle(shown(desktop_text::pickerTitle));
    makeLayout(desktop);
    fill(rows);
    choose(chosen);
    connect(tree_, &QTreeWidget::itemChanged, this, &PropertyPicker::ticked);
    resize(usualSize);
}

void PropertyPicker::makeLayout(const Desktop& desktop)
{
    tree_->setObjectName(QStringLiteral("scan.properties"));
    tree_->setAccessibleName(shown(desktop_text::pickerListName));
    tree_->setHeaderLabels({shown(desktop_text::pickerProperty), shown(desktop_text::pickerDescription)});
    tree_->header()->setStretchLastSection(true);
    tree_->setUniformRowHeights(true);
    summary_->setObjectName(QStringLiteral("scan.chosenProperties"));
    summary_->setWordWrap(true);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(makeSearch());
    layout->addWidget(tree_, 1);
    layout->addWidget(summary_);
    layout->addWidget(makeButtons(desktop));
}

QWidget* PropertyPicker::makeSearch()
{
    auto* const words = new QLineEdit(this);
    words->setObjectName(QStringLiteral("scan.propertySearch"));
    words->setPlaceholderText(shown(desktop_text::pickerSearch));
    words->setAccessibleName(shown(desktop_text::pickerSearch));
    words->setClearButtonEnabled(true);
    connect(words, &QLineEdit::textChanged, this, &PropertyPicker::search);
    return words;
}

QWidget* PropertyPicker::makeButtons(const Desktop& desktop)
{
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    auto* const sets = new NamedSetsButton(
        desktop, &Settings::columnSets, desktop_text::columnSets, [this] { return fromQt(chosen()); }, row);
    sets->setObjectName(QStringLiteral("scan.columnSets"));
    connect(sets, &NamedSetsButton::chosen, this, [this](const std::u16string& names) { choose(toQt(names)); });
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, row);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(sets);
    layout->addWidget(buttons);
    return row;
}

void PropertyPicker::fill(const std::vector<PropertyRow>& rows)
{
    QTreeWidgetItem* kind = nullptr;
    for (const PropertyRow& row : rows) {
        if (kind == nullptr || kind->text(0) != row.kind) {
            kind = new QTreeWidgetItem(tree_, {row.kind});
            kind->setFlags(Qt::ItemIsEnabled);
            kind->setFirstColumnSpanned(true);
            kind->setExpanded(true);
        }
        items_[row.name] = addItem(*kind, row);
    }
    tree_->resizeColumnToContents(0);
}

// In place of what was chosen; names that nothing knows are left out.
void PropertyPicker::choose(const QString& names)
{
    const QSignalBlocker quiet(tree_);
    for (const QString& name : chosen_)
        items_.at(name)->setCheckState(0, Qt::Unchecked);
    chosen_.clear();
    for (const QString& name : names.split(u',', Qt::SkipEmptyParts)) {
        const auto item = items_.find(name.trimmed());
        if (item == items_.end() || chosen_.contains(item->first))
            continue;
        item->second->setCheckState(0, Qt::Checked);
        chosen_.append(item->first);
    }
    refresh();
}

void PropertyPicker::ticked(QTreeWidgetItem* item)
{
    const QString name = nameOf(*item);
    chosen_.removeAll(name);
    if (item->checkState(0) == Qt::Checked)
        chosen_.append(name);
    refresh();
}

void PropertyPicker::search(const QString& typed)
{
    const QStringList words = typed.split(u' ', Qt::SkipEmptyParts);
    for (int at = 0; at < tree_->topLevelItemCount(); ++at) {
        QTreeWidgetItem* const kind = tree_->topLevelItem(at);
        bool any = false;
        for (int child = 0; child < kind->childCount(); ++child) {
            const bool holds = holdsWords(*kind->child(child), words);
            kind->child(child)->setHidden(!holds);
            any = any || holds;
        }
        kind->setHidden(!any);
    }
}

void PropertyPicker::refresh()
{
    QStringList labels;
    for (const QString& name : chosen_)
        labels.append(items_.at(name)->text(0));
    summary_->setText(labels.isEmpty()
                          ? shown(desktop_text::pickerNothing)
                          : shown(desktop_text::pickerChosen, {labels.join(QStringLiteral(", ")).toStdString()}));
}

}  // namespace kelvane
