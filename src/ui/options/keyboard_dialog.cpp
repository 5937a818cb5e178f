#include "ui/options/keyboard_dialog.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/desktop_texts/options.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/commands.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// A label without the mark of its letter.
QString plain(QString label)
{
    return label.replace(QStringLiteral("&&"), QStringLiteral("\v")).remove(u'&').replace(u'\v', u'&');
}

QString keysOf(const QAction& action)
{
    QStringList keys;
    for (const QKeySequence& sequence : action.shortcuts())
        keys.push_back(sequence.toString(QKeySequence::NativeText));
    return keys.join(QStringLiteral(", "));
}

void collect(const QMenu& menu, QTreeWidgetItem& group)
{
    for (const QAction* const action : menu.actions()) {
        if (!action->shortcuts().isEmpty())
            new QTreeWidgetItem(&group, {plain(action->text()), keysOf(*action)});
        if (action->menu() != nullptr)
            collect(*action->menu(), group);
    }
}

}  // namespace

KeyboardDialog::KeyboardDialog(WindowLink& link, const CommandSet& commands)
    : QDialog(link.frame()), list_(new QTreeWidget)
{
    setObjectName(QStringLiteral("keyboardDialog"));
    setWindowTitle(shown(say::keyboardTitle));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(680, 640);
    auto* const search = new QLineEdit;
    search->setObjectName(QStringLiteral("keyboardSearch"));
    search->setPlaceholderText(shown(say::keyboardSearch));
    search->setAccessibleName(shown(say::keyboardSearch));
    search->setClearButtonEnabled(true);
    connect(search, &QLineEdit::textChanged, this, &KeyboardDialog::search);
    list_->setObjectName(QStringLiteral("keyboardList"));
    list_->setAccessibleName(shown(say::keyboardTitle));
    list_->setHeaderLabels({shown(say::keyboardCommand), shown(say::keyboardKeys)});
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setStretchLastSection(false);
    list_->setColumnWidth(1, 190);
    list_->setRootIsDecorated(false);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(search);
    layout->addWidget(list_);
    fill(commands);
}

void KeyboardDialog::fill(const CommandSet& commands)
{
    for (const MenuId id : {MenuId::file, MenuId::edit, MenuId::view, MenuId::mark, MenuId::tools, MenuId::help}) {
        const QMenu& menu = *commands.menu(id);
        auto* const group = new QTreeWidgetItem(list_, {plain(menu.title())});
        QFont bold = list_->font();
        bold.setBold(true);
        group->setFont(0, bold);
        collect(menu, *group);
        group->setExpanded(true);
        group->setHidden(group->childCount() == 0);
    }
}

void KeyboardDialog::search(const QString& typed)
{
    for (int at = 0; at < list_->topLevelItemCount(); ++at) {
        QTreeWidgetItem* const group = list_->topLevelItem(at);
        bool any = false;
        for (int child = 0; child < group->childCount(); ++child) {
            QTreeWidgetItem* const item = group->child(child);
            const bool fits = item->text(0).contains(typed, Qt::CaseInsensitive) ||
                              item->text(1).contains(typed, Qt::CaseInsensitive);
            item->setHidden(!fits);
            any = any || fits;
        }
        group->setHidden(!any);
    }
}

}  // namespace kelvane
