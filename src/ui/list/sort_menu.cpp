#include "ui/list/sort_menu.h"

#include <QApplication>
#include <QMenu>
#include <algorithm>

#include "base/desktop_texts/list.h"
#include "ui/core/text.h"
#include "ui/list/list_header.h"
#include "ui/list/list_sorting.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

QAction* addChoice(QMenu& menu, const QString& label, bool checked)
{
    QAction* const action = menu.addAction(label);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

// As a click on its title: once more turns the order round, and shift makes it a further key.
void addColumns(QMenu& menu, ListSorting& sorting, const ListHeader& header)
{
    const ListSorting::Key* const key = sorting.firstKey();
    for (const std::string& name : header.namesInOrder()) {
        const auto& columns = header.columns();
        const auto column = std::find_if(columns.begin(), columns.end(),
                                         [&name](const ListColumn& other) { return other.name == name; });
        QString label = column->title;
        label.replace(u'&', QStringLiteral("&&"));
        QAction* const action = addChoice(menu, label, key != nullptr && key->column == name);
        QObject::connect(action, &QAction::triggered, &sorting, [&sorting, name] {
            sorting.sortBy(name, QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier));
        });
    }
}

void addDirections(QMenu& menu, ListSorting& sorting)
{
    const ListSorting::Key* const key = sorting.firstKey();
    for (const bool ascending : {true, false}) {
        QAction* const action = addChoice(menu, shown(ascending ? say::listSortUp : say::listSortDown),
                                          key != nullptr && key->ascending == ascending);
        action->setEnabled(key != nullptr);
        QObject::connect(action, &QAction::triggered, &sorting, [&sorting, ascending] { sorting.turn(ascending); });
    }
}

// With the current choice under the keys.
void openAt(QMenu& menu, const QPoint& place)
{
    menu.popup(place);
    const QList<QAction*> choices = menu.actions();
    const auto current = std::find_if(choices.begin(), choices.end(), [](QAction* one) { return one->isChecked(); });
    if (!choices.isEmpty())
        menu.setActiveAction(current != choices.end() ? *current : choices.front());
}

}  // namespace

void addSortMenu(const FrameParts& parts, ListSorting& sorting, const ListHeader& header)
{
    auto* const menu = new QMenu(parts.commands.menu(MenuId::view));
    QObject::connect(menu, &QMenu::aboutToShow, &sorting, [menu, &sorting, &header] {
        menu->clear();
        addColumns(*menu, sorting, header);
        menu->addSeparator();
        addDirections(*menu, sorting);
    });
    QAction* const command = parts.commands.add({.name = "view.sort",
                                                 .label = say::listSortBy,
                                                 .menu = MenuId::view,
                                                 .run =
                                                     [menu, &header] {
                                                         const QWidget& list = *header.parentWidget();
                                                         openAt(*menu, list.mapToGlobal(QPoint(0, header.height())));
                                                     },
                                                 .keys = Qt::CTRL | Qt::SHIFT | Qt::Key_O,
                                                 .when = when::hasItems});
    command->setMenu(menu);
}

}  // namespace kelvane
