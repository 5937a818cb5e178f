#include "ui/frame/frame_commands.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenu>

#include "app/setting_bits.h"
#include "base/desktop_texts/frame.h"
#include "ui/core/window_link.h"
#include "ui/frame/groups_pane.h"
#include "ui/frame/log_pane.h"
#include "ui/frame/pane_walk.h"
#include "ui/frame/theme.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

// Every window follows, be it this one or another.
void tellWindows()
{
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const window = qobject_cast<MainWindow*>(widget))
            Q_EMIT window->link().optionsChanged();
}

void chooseMode(Desktop& desktop, InterfaceMode mode)
{
    desktop.change([mode](Settings& settings) { setInterfaceMode(settings, mode); });
    tellWindows();
}

void chooseThemeOf(Desktop& desktop, Theme theme)
{
    desktop.change([theme](Settings& settings) { chooseTheme(theme, settings); });
    rememberTheme(theme, desktop.memory);
    tellWindows();
}

template <class Choice>
struct ChoiceRow {
    const char* name;
    TextId label;
    Choice choice;
};

// A submenu of choices, of which one is in force.
template <class Choice>
void addChoices(const FrameParts& parts, QMenu* submenu, std::initializer_list<ChoiceRow<Choice>> rows,
                void (*choose)(Desktop&, Choice), Choice (*inForce)(const Desktop&))
{
    auto* const group = new QActionGroup(submenu);
    Desktop& desktop = parts.link.desktop();
    for (const ChoiceRow<Choice>& row : rows) {
        QAction* const action = parts.commands.add({.name = row.name,
                                                    .label = row.label,
                                                    .menu = MenuId::view,
                                                    .run = [&desktop, choose, it = row.choice] { choose(desktop, it); },
                                                    .checkable = true,
                                                    .submenu = submenu});
        group->addAction(action);
        const auto follow = [action, &desktop, inForce, it = row.choice] {
            action->setChecked(inForce(desktop) == it);
        };
        follow();
        QObject::connect(&parts.link, &WindowLink::optionsChanged, action, follow);
    }
}

void addModes(const FrameParts& parts)
{
    QMenu* const submenu = parts.commands.addSubmenu(MenuId::view, "view.interface", say::menuInterface);
    addChoices<InterfaceMode>(parts, submenu,
                              {{"view.advanced", say::modeAdvanced, InterfaceMode::advanced},
                               {"view.standard", say::modeStandard, InterfaceMode::standard},
                               {"view.beginner", say::modeBeginner, InterfaceMode::beginner}},
                              chooseMode, [](const Desktop& desktop) { return interfaceModeOf(desktop.settings()); });
}

void addThemes(const FrameParts& parts)
{
    QMenu* const submenu = parts.commands.addSubmenu(MenuId::view, "view.theme", say::menuTheme);
    addChoices<Theme>(parts, submenu,
                      {{"view.themeSystem", say::themeSystem, Theme::system},
                       {"view.themeLight", say::themeLight, Theme::light},
                       {"view.themeDark", say::themeDark, Theme::dark}},
                      chooseThemeOf,
                      [](const Desktop& desktop) { return themeOf(desktop.settings(), desktop.memory); });
}

void addWindowCommands(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    parts.commands.add({"file.newWindow", say::commandNewWindow, MenuId::file,
                        [&link] { link.desktop().application().post(OpenWindow{}); }, QKeySequence::New});
}

void addLayoutCommands(const FrameParts& parts)
{
    MainWindow& window = parts.window;
    auto* const full = parts.commands.add({.name = "view.fullScreen",
                                           .label = say::commandFullScreen,
                                           .menu = MenuId::view,
                                           .run = [&window] { window.showFullScreen(!window.isFullScreen()); },
                                           .keys = QKeySequence(Qt::Key_F11),
                                           .checkable = true});
    QObject::connect(parts.commands.menu(MenuId::view), &QMenu::aboutToShow, full,
                     [full, &window] { full->setChecked(window.isFullScreen()); });
    parts.commands.add(
        {.name = "view.resetLayout", .label = say::commandResetLayout, .menu = MenuId::view, .run = [&window] {
             window.resetLayout();
         }});
}

void addPaneCommands(const FrameParts& parts)
{
    MainWindow& window = parts.window;
    QMenu* const panes = window.panesMenu();
    panes->addSeparator();
    const auto add = [&](const char* name, TextId label, const QKeySequence& keys, int step) {
        parts.commands.add({.name = name,
                            .label = label,
                            .menu = MenuId::view,
                            .run = [&window, step] { goToNextPane(window, step); },
                            .keys = keys,
                            .submenu = panes});
    };
    add("view.nextPane", say::commandNextPane, QKeySequence(Qt::Key_F6), 1);
    add("view.previousPane", say::commandPreviousPane, QKeySequence(Qt::SHIFT | Qt::Key_F6), -1);
}

}  // namespace

void installFrameCommands(const FrameParts& parts)
{
    addWindowCommands(parts);
    addModes(parts);
    addThemes(parts);
    addLayoutCommands(parts);
}

void installClosing(const FrameParts& parts)
{
    MainWindow& window = parts.window;
    parts.commands.add({.name = "file.close",
                        .label = say::commandClose,
                        .menu = MenuId::file,
                        .run = [&window] { window.close(); },
                        .keys = QKeySequence::Close,
                        .beginsSection = true});
}

void installFramePanes(const FrameParts& parts)
{
    parts.window.addPane(new GroupsPane(parts.link), "groups.pane", say::paneGroups, Qt::BottomDockWidgetArea);
    parts.window.addPane(new LogPane(parts.link), "log.pane", say::paneLog, Qt::BottomDockWidgetArea);
    addPaneCommands(parts);
}

}  // namespace kelvane
