#include "ui/scan/scan_form.h"

#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/scan/category_box.h"
#include "ui/scan/folder_list.h"

namespace kelvane {

ScanForm::ScanForm(WindowLink& link, QWidget* parent)
    : QScrollArea(parent), link_(link), folders_(new FolderList), category_(new CategoryBox), check_(new QLabel)
{
    setObjectName(QStringLiteral("scan.form"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    check_->setObjectName(QStringLiteral("scan.check"));
    check_->setWordWrap(true);
    check_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const where = new QGroupBox(shown(desktop_text::foldersHeading));
    auto* const inside = new QVBoxLayout(where);
    inside->addWidget(folders_);
    inside->addWidget(check_);
    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->addWidget(where);
    layout->addWidget(category_);
    layout->addStretch();
    setWidget(content);
    connect(folders_, &FolderList::edited, this, &ScanForm::edited);
    connect(category_, &CategoryBox::edited, this, &ScanForm::edited);
}

ScanOrder ScanForm::order() const
{
    ScanOrder order = base_;
    order.definition.roots = link_.desktop().platform().paths().joinRoots(folders_->included());
    category_->read(order.definition);
    return order;
}

void ScanForm::show(const ScanOrder& order)
{
    base_ = order;
    category_->setCategories(link_.desktop().settings().fileTypes);
    category_->show(order.definition);
    folders_->show(link_.desktop().platform().paths().splitRoots(order.definition.roots));
}

void ScanForm::showCheck(const OrderCheck& check)
{
    QString text = check.problem;
    if (text.isEmpty())
        text = shown(desktop_text::foldersEffective) + u'\n' + (check.roots + check.dropped).join(u'\n');
    check_->setText(text);
}

}  // namespace kelvane
