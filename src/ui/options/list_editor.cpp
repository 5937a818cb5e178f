#include "ui/options/list_editor.h"

#include <QColorDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/options/choice_editors.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

constexpr int shownRows = 6;

}  // namespace

ListEditor::ListEditor(const ListSpec& spec)
    : spec_(spec), table_(new QTableWidget(0, static_cast<int>(spec.columns.size())))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(table_);
    makeTable();
    makeButtons();
    setFocusProxy(table_);
}

void ListEditor::makeTable()
{
    QStringList titles;
    for (const TextId column : spec_.columns)
        titles.push_back(shown(column));
    table_->setHorizontalHeaderLabels(titles);
    table_->horizontalHeader()->setStretchLastSection(spec_.colorColumn < 0);
    table_->setColumnWidth(0, titles.size() > 1 ? 160 : 400);
    table_->verticalHeader()->hide();
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setTabKeyNavigation(false);  // the key leads on to the next control
    table_->setFixedHeight((shownRows + 1) * table_->verticalHeader()->defaultSectionSize());
    if (spec_.write == nullptr)
        table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(table_, &QTableWidget::cellChanged, this, &ListEditor::tellAll);
    connect(table_, &QTableWidget::cellActivated, this, [this](int row, int column) {
        if (column == spec_.colorColumn)
            chooseColor(row);
    });
}

void ListEditor::makeButtons()
{
    auto* const buttons = new QHBoxLayout;
    if (spec_.most > 0) {
        add_ = new QPushButton(shown(say::buttonAdd));
        connect(add_, &QPushButton::clicked, this, &ListEditor::add);
        buttons->addWidget(add_);
    }
    if (spec_.canRemove) {
        remove_ = new QPushButton(shown(say::buttonRemove));
        remove_->setEnabled(false);
        connect(remove_, &QPushButton::clicked, this, &ListEditor::remove);
        connect(table_, &QTableWidget::itemSelectionChanged, this,
                [this] { remove_->setEnabled(!table_->selectedItems().isEmpty()); });
        buttons->addWidget(remove_);
    }
    buttons->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
}

void ListEditor::display(const Settings& settings)
{
    const QSignalBlocker quiet(table_);
    const ListRows now = spec_.read(settings);
    if (now == rows())
        return;  // a selection and an editor that is open stay
    table_->setRowCount(static_cast<int>(now.size()));
    for (std::size_t row = 0; row < now.size(); ++row)
        fill(static_cast<int>(row), now[row]);
    if (add_ != nullptr)
        add_->setEnabled(now.size() < spec_.most);
}

void ListEditor::copy(const Settings& from, Settings& to) const
{
    if (spec_.write != nullptr)
        spec_.write(to, spec_.read(from));
}

void ListEditor::fill(int row, const QStringList& texts)
{
    for (int column = 0; column < texts.size(); ++column) {
        auto* const item = new QTableWidgetItem(texts[column]);
        item->setToolTip(plainTip(texts[column]));
        if (column == spec_.colorColumn) {
            const QColor color = colorOf(texts[column].toUInt(nullptr, 16));
            item->setBackground(color);
            item->setForeground(color.lightness() > 128 ? Qt::black : Qt::white);
            item->setFlags(item->flags() & ~Qt::ItemIsEditable);
        }
        table_->setItem(row, column, item);
    }
}

ListRows ListEditor::rows() const
{
    ListRows rows;
    for (int row = 0; row < table_->rowCount(); ++row) {
        QStringList texts;
        for (int column = 0; column < table_->columnCount(); ++column) {
            const QTableWidgetItem* const item = table_->item(row, column);
            texts.push_back(item != nullptr ? item->text() : QString());
        }
        rows.push_back(texts);
    }
    return rows;
}

void ListEditor::tellAll()
{
    Q_EMIT edited([&spec = spec_, rows = rows()](Settings& settings) { spec.write(settings, rows); });
}

// The new entry is there at once, under a name that can be kept, and its first cell is ready to be written in.
void ListEditor::add()
{
    const int row = table_->rowCount();
    {
        const QSignalBlocker quiet(table_);
        table_->insertRow(row);
        QStringList texts(static_cast<int>(spec_.columns.size()));
        texts[0] = spec_.columns[0] == say::columnName ? shown(say::newEntryName) : QString();
        if (spec_.colorColumn >= 0)
            texts[spec_.colorColumn] = QStringLiteral("0000C0C0");
        fill(row, texts);
    }
    table_->setCurrentCell(row, 0);
    table_->editItem(table_->item(row, 0));
}

void ListEditor::remove()
{
    const int row = table_->currentRow();
    if (row < 0)
        return;
    if (spec_.write == nullptr) {
        Q_EMIT edited([&spec = spec_, row](Settings& settings) { spec.drop(settings, static_cast<std::size_t>(row)); });
        return;
    }
    table_->removeRow(row);
    tellAll();
}

void ListEditor::chooseColor(int row)
{
    auto* const dialog = new QColorDialog(table_->item(row, spec_.colorColumn)->background().color(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, [this, row](const QColor& color) {
        QStringList texts = rows()[static_cast<std::size_t>(row)];
        texts[spec_.colorColumn] = QStringLiteral("%1").arg(storedColor(color), 8, 16, QLatin1Char('0')).toUpper();
        {
            const QSignalBlocker quiet(table_);
            fill(row, texts);
        }
        tellAll();
    });
    dialog->open();
}

}  // namespace kelvane
