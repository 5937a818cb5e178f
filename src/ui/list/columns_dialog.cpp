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
    makeButtons();
    resize(420, 520);
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
