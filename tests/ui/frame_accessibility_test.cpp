// What a screen reader and a keyboard find in a window: every control and every command has a name, and letters that
// are underlined lead to one thing.
#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleInterface>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <deque>

#include "support/ui/desktop_world.h"

namespace kelvane::testing {
namespace {

// Parts of bigger controls, which speak for them.
bool speaksForItself(const QAccessibleInterface& part)
{
    switch (part.role()) {
    case QAccessible::ScrollBar:
    case QAccessible::StaticText:  // is its own name, and may be empty for a while
    case QAccessible::PageTabList:
    case QAccessible::Separator:
    case QAccessible::Cell:
    case QAccessible::ListItem:
    case QAccessible::TreeItem:
    case QAccessible::ColumnHeader:
    case QAccessible::RowHeader:
    case QAccessible::Client:
    case QAccessible::Pane:
    case QAccessible::Window:
        return false;
    default:
        return true;
    }
}

bool mustHaveName(QAccessibleInterface& part)
{
    const QAccessible::State state = part.state();
    const bool command = part.role() == QAccessible::MenuItem || part.role() == QAccessible::Button ||
                         part.role() == QAccessible::CheckBox || part.role() == QAccessible::RadioButton ||
                         part.role() == QAccessible::PageTab || part.role() == QAccessible::EditableText ||
                         part.role() == QAccessible::ComboBox || part.role() == QAccessible::SpinBox ||
                         part.role() == QAccessible::Slider;
    return speaksForItself(part) && !state.invisible && (command || state.focusable);
}

QString described(QAccessibleInterface& part)
{
    QString where;
    for (QObject* object = part.object(); object != nullptr; object = object->parent())
        where += QStringLiteral(" < ") + QString::fromLatin1(object->metaObject()->className()) + u' ' +
                 object->objectName();
    return QStringLiteral("role %1").arg(part.role()) + where;
}

QStringList partsWithoutName(QObject& top)
{
    QStringList nameless;
    std::deque<QAccessibleInterface*> waiting{QAccessible::queryAccessibleInterface(&top)};
    while (!waiting.empty()) {
        QAccessibleInterface* const part = waiting.front();
        waiting.pop_front();
        if (part == nullptr || !part->isValid())
            continue;
        if (mustHaveName(*part) && part->text(QAccessible::Name).trimmed().isEmpty())
            nameless.push_back(described(*part));
        if (part->tableInterface() != nullptr)
            continue;  // its cells are texts of the list
        for (int child = 0; child < part->childCount(); ++child)
            waiting.push_back(part->child(child));
    }
    return nameless;
}

TEST(FrameAccessibility, EveryControlOfAWindowHasAName)
{
    for (const InterfaceMode mode : {InterfaceMode::beginner, InterfaceMode::standard, InterfaceMode::advanced}) {
        DesktopWorld world({.mode = mode});
        world.loadList({{"a", "b"}});
        const QStringList nameless = partsWithoutName(world.window());
        EXPECT_TRUE(nameless.isEmpty()) << nameless.join(u'\n').toStdString();
    }
}

TEST(FrameAccessibility, EveryCommandHasANameAndKeysAreUsedOnce)
{
    DesktopWorld world;
    std::map<QString, QString> owners;
    for (const QAction* const action : world.window().findChildren<QAction*>()) {
        if (!action->objectName().contains(u'.'))
            continue;
        const QString name = action->objectName();
        EXPECT_FALSE(action->text().isEmpty()) << name.toStdString();
        for (const QKeySequence& keys : action->shortcuts()) {
            const auto [owner, isNew] = owners.try_emplace(keys.toString(), name);
            EXPECT_TRUE(isNew) << name.toStdString() << " has the keys of " << owner->second.toStdString();
        }
    }
}

// Letters that work with Alt: of menus, and of what is shown in the window.
QList<std::pair<QString, QString>> textsWithLetters(const MainWindow& window)
{
    QList<std::pair<QString, QString>> texts;
    const auto add = [&](const QObject& owner, const QString& text) {
        if (!QKeySequence::mnemonic(text).isEmpty())
            texts.push_back({QKeySequence::mnemonic(text).toString(), owner.objectName() + u' ' + text});
    };
    for (const QAction* const action : window.menuBar()->actions())
        add(*action, action->text());
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        if (button->isVisibleTo(&window))
            add(*button, button->text());
    for (const QLabel* const label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr && label->isVisibleTo(&window))
            add(*label, label->text());
    return texts;
}

TEST(FrameAccessibility, NoTwoControlsOfAWindowAnswerToOneLetter)
{
    for (const InterfaceMode mode : {InterfaceMode::beginner, InterfaceMode::standard, InterfaceMode::advanced}) {
        DesktopWorld world({.mode = mode});
        for (QDockWidget* const pane : world.window().findChildren<QDockWidget*>())
            pane->show();
        std::map<QString, QString> owners;
        for (const auto& [letter, text] : textsWithLetters(world.window())) {
            const auto [owner, isNew] = owners.try_emplace(letter, text);
            EXPECT_TRUE(isNew) << text.toStdString() << " and " << owner->second.toStdString();
        }
        EXPECT_GT(owners.size(), 6u);  // more than the menus
    }
}

TEST(FrameAccessibility, NoTwoCommandsOfAMenuAnswerToOneLetter)
{
    DesktopWorld world;
    world.loadList({{"a", "b"}});
    for (const QMenu* const menu : world.window().menuBar()->findChildren<QMenu*>()) {
        std::map<QString, QString> owners;
        for (const QAction* const action : menu->actions()) {
            const QString letter = QKeySequence::mnemonic(action->text()).toString();
            if (letter.isEmpty() || !action->isVisible())
                continue;
            const auto [owner, isNew] = owners.try_emplace(letter, action->text());
            EXPECT_TRUE(isNew) << menu->title().toStdString() << ": " << action->text().toStdString() << " and "
                               << owner->second.toStdString();
        }
    }
}

}  // namespace
}  // namespace kelvane::testing
