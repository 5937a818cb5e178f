#include "ui/list/columns_dialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
constexpr int nameRole = Qt::UserRole;

}  // namespace

ColumnsDialog::ColumnsDialog(const std::vector<ListColumn>& inView, const std::vector<ListColumn>& others,
                             QWidget* parent)
    : QDialog(parent), search_(new QLineEdit(this)), list_(new QListWidget(this))
{
    setObjectName(QStringLiteral("columnsDialog"));
    setWindowTitle(shown(say::listColumnsTitle));
    search_->setObjectName(QStringLiteral("columnsSearch"));
    search_->setPlaceholderText(shown(say::listColumnsSearch));
    search_->setAccessibleName(shown(say::listColumnsSearch));
    search_->setClearButtonEnabled(true);
    list_->setObjectName(QStringLiteral("columnsList"));
    list_->setAccessibleName(shown(say::listColumnsAll));
    for (const ListColumn& column : inView)
        add(column, true);
    for (const ListColumn& column : others)
        add(column, false);
    connect(search_, &QLineEdit::textChanged, this, &ColumnsDialog::narrow);
    auto* const lines = new QVBoxLayout(this);
    lines->addWidget(search_);
    lines->addWidget(list_);
    makeMovers(*lines);
    makeButtons();
    resize(420, 520);
}

// With keys that work in the list, where dragging titles is no way without a mouse.
void ColumnsDialog::makeMovers(QVBoxLayout& lines)
{
    auto* const row = new QHBoxLayout;
    const auto add = [&](const char* name, TextId label, const QKeySequence& keys, int step) {
        auto* const button =
            new QPushButton(shown(label, {keys.toString(QKeySequence::NativeText).toStdString()}), this);
        button->setObjectName(QString::fromLatin1(name));
        button->setShortcut(keys);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, step] { moveCurrent(step); });
        row->addWidget(button);
    };
    add("columnsUp", say::listColumnUp, Qt::ALT | Qt::Key_Up, -1);
    add("columnsDown", say::listColumnDown, Qt::ALT | Qt::Key_Down, 1);
    row->addStretch();
    lines.addLayout(row);
}

// Past its neighbour in sight: a search may hide others between them.
void ColumnsDialog::moveCurrent(int step)
{
    const int from = list_->currentRow();
    int to = from + step;
    while (to >= 0 && to < list_->count() && list_->item(to)->isHidden())
        to += step;
    if (from < 0 || to < 0 || to >= list_->count())
        return;
    QListWidgetItem* const item = list_->takeItem(from);
    list_->insertItem(to, item);
    list_->setCurrentItem(item);
}

void ColumnsDialog::makeButtons()
{
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* const reset = buttons->addButton(shown(say::listColumnsReset), QDialogButtonBox::ResetRole);
    reset->setObjectName(QStringLiteral("columnsReset"));
    connect(reset, &QPushButton::clicked, this, [this] {
        defaults_ = true;
        accept();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
}

void ColumnsDialog::add(const ListColumn& column, bool ticked)
{
    auto* const item = new QListWidgetItem(column.title, list_);
    item->setData(nameRole, QString::fromStdString(column.name));
    item->setToolTip(QString::fromStdString(column.name));
    item->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
}

void ColumnsDialog::narrow(const QString& text)
{
    for (int row = 0; row < list_->count(); ++row) {
        QListWidgetItem& item = *list_->item(row);
        item.setHidden(!item.text().contains(text, Qt::CaseInsensitive) &&
                       !item.data(nameRole).toString().contains(text, Qt::CaseInsensitive));
    }
}

std::vector<std::string> ColumnsDialog::chosen() const
{
    std::vector<std::string> names;
    for (int row = 0; row < list_->count() && !defaults_; ++row)
        if (list_->item(row)->checkState() == Qt::Checked)
            names.push_back(list_->item(row)->data(nameRole).toString().toStdString());
    return names;
}

}  // namespace kelvane
