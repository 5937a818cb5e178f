#include "ui/scan/scan_form.h"

#include <QGroupBox>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/core/wrapped_label.h"
#include "ui/scan/category_box.h"
#include "ui/scan/compare_box.h"
#include "ui/scan/folder_list.h"
#include "ui/scan/named_sets.h"
#include "ui/scan/options_box.h"
#include "ui/scan/scan_modes.h"

namespace kelvane {

ScanForm::ScanForm(WindowLink& link, QWidget* parent)
    : QScrollArea(parent),
      link_(link),
      folders_(new FolderList),
      category_(new CategoryBox),
      compare_(new CompareBox(link.desktop())),
      options_(new OptionsBox),
      check_(new WrappedLabel("scan.check"))
{
    setObjectName(QStringLiteral("scan.form"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    makeLayout();
    setMode(mode_);
    connect(folders_, &FolderList::edited, this, [this] {
        const std::string leftOut = link_.desktop().platform().paths().joinRoots(folders_->leftOut());
        link_.desktop().memory.setValue(leftOutMemory, QByteArray::fromStdString(leftOut));
        Q_EMIT edited();
    });
    connect(category_, &CategoryBox::edited, this, &ScanForm::edited);
    connect(compare_, &CompareBox::edited, this, &ScanForm::edited);
    connect(options_, &OptionsBox::edited, this, &ScanForm::edited);
}

void ScanForm::makeLayout()
{
    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->addWidget(makeFolders());
    layout->addWidget(category_);
    layout->addWidget(compare_);
    layout->addWidget(options_);
    layout->addStretch();
    setWidget(content);
    setMinimumWidth(content->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width() + 2 * frameWidth());
}

QWidget* ScanForm::makeFolders()
{
    auto* const box = new QGroupBox(shown(desktop_text::foldersHeading));
    // Kept as text: a folder whose name is none cannot be in a set.
    auto* const sets = new NamedSetsButton(link_.desktop(), &Settings::folderSets, desktop_text::folderSets,
                                           [this] { return fromQt(toQt(order().definition.roots)); });
    sets->setObjectName(QStringLiteral("scan.folderSets"));
    connect(sets, &NamedSetsButton::chosen, this, [this](const std::u16string& roots) {
        folders_->show(link_.desktop().platform().paths().splitRoots(toQt(roots).toStdString()));
    });
    folders_->addButton(sets);
    auto* const inside = new QVBoxLayout(box);
    inside->addWidget(folders_);
    inside->addWidget(check_);
    return box;
}

ScanOrder ScanForm::order() const
{
    ScanOrder order = base_;
    order.definition.roots = link_.desktop().platform().paths().joinRoots(folders_->included());
    category_->read(order.definition);
    compare_->read(order.definition);
    options_->read(order);
    return allowedOrder(std::move(order), mode_);
}

void ScanForm::show(const ScanOrder& order)
{
    base_ = order;
    category_->setCategories(link_.desktop().settings().fileTypes);
    category_->show(order.definition);
    compare_->show(order.definition);
    options_->show(order);
    folders_->show(link_.desktop().platform().paths().splitRoots(order.definition.roots));
}

std::vector<std::string> ScanForm::unticked() const
{
    return folders_->leftOut();
}

void ScanForm::recallLeftOut(const QByteArray& folders)
{
    folders_->leaveOut(link_.desktop().platform().paths().splitRoots(folders.toStdString()));
}

void ScanForm::showCheck(const OrderCheck& check)
{
    QStringList lines;
    if (check.roots.isEmpty() && check.dropped.isEmpty())
        lines.append(shown(desktop_text::foldersNone));
    if (!check.roots.isEmpty())
        lines.append(shown(desktop_text::foldersEffective));
    check_->setText((lines + check.roots + check.covered + check.dropped).join(u'\n'));
    compare_->showProblem(options_->hasProblem() ? QString() : check.criteriaProblem);
}

void ScanForm::setProperties(std::vector<PropertyRow> rows)
{
    compare_->setProperties(std::move(rows));
}

void ScanForm::setMode(InterfaceMode mode)
{
    mode_ = mode;
    options_->setMode(mode);
    Q_EMIT edited();
}

}  // namespace kelvane
