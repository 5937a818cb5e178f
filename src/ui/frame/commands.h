// Everything that can be asked of a window: one action each, the same one in menus, toolbar and context menus.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QObject>
#include <functional>
#include <initializer_list>
#include <map>

#include "app/questions.h"
#include "base/text_table.h"

class QMainWindow;
class QMenu;
class QToolBar;

namespace kelvane {

class WindowLink;

enum class MenuId { file, edit, view, mark, tools, help };

// When a command can be given: all that is named must hold.
namespace when {
inline constexpr unsigned idle = 1;         // no job runs
inline constexpr unsigned busy = 2;         // a job runs
inline constexpr unsigned hasItems = 4;     // there is a list, be it filtered away
inline constexpr unsigned hasTicks = 8;     // in view
inline constexpr unsigned isSelected = 16;  // at least one row is
inline constexpr unsigned hasCurrent = 32;  // the person is at an item
}  // namespace when

struct CommandSpec {
    const char* name;  // the action's object name, "mark.invert"; its icon is called the same
    TextId label;      // "&" before the letter of its key
    MenuId menu;
    std::function<void()> run;
    QKeySequence keys{};
    unsigned when = 0;
    InterfaceMode leastMode = InterfaceMode::beginner;  // hidden in simpler ones
    bool inToolbar = false;
    bool beginsSection = false;  // a line above it
    bool checkable = false;
    QMenu* submenu = nullptr;  // stands in this one instead
};

// Owned by the frame.
class CommandSet final : public QObject {
    Q_OBJECT

public:
    CommandSet(WindowLink& link, QMainWindow& window);

    QAction* add(const CommandSpec& spec);
    // Puts the toolbar's commands into this order, with a line for each empty name; those that are not named follow.
    void arrangeToolbar(std::initializer_list<const char*> names);
    // A menu in a menu, for commands that name it.
    QMenu* addSubmenu(MenuId menu, const char* name, TextId label);
    // Null for an unknown name.
    [[nodiscard]] QAction* find(const QString& name) const;
    [[nodiscard]] QMenu* menu(MenuId menu) const { return menus_.at(menu); }
    [[nodiscard]] QToolBar* toolbar() const { return toolbar_; }

    void setMode(InterfaceMode mode);
    [[nodiscard]] InterfaceMode mode() const { return mode_; }
    // In the colours of the palette that is in force now.
    void renewIcons();
    // Looks at the conditions again: called by itself when jobs, list and selection change.
    void refresh();

Q_SIGNALS:
    void modeChanged(kelvane::InterfaceMode mode);

private:
    struct Entry {
        QAction* action;
        unsigned when;
        InterfaceMode leastMode;
    };

    [[nodiscard]] unsigned holds() const;

    WindowLink& link_;
    QMainWindow& window_;
    std::map<MenuId, QMenu*> menus_;
    QToolBar* toolbar_;
    std::vector<Entry> entries_;
    InterfaceMode mode_ = InterfaceMode::standard;
};

}  // namespace kelvane
