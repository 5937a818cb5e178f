#include "ui/frame/commands.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "base/desktop_texts/frame.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/icons.h"

namespace kelvane {
namespace {

// What a mode shows: advanced shows everything.
int rankOf(InterfaceMode mode)
{
    return mode == InterfaceMode::beginner ? 0 : mode == InterfaceMode::standard ? 1 : 2;
}

// A toolbar's button shows neither the command's name nor its keys.
QString toolTipOf(const QAction& action)
{
    const QString keys = action.shortcut().toString(QKeySequence::NativeText);
    const QString name = action.toolTip();  // the label without its marks
    return keys.isEmpty() ? name : name + QStringLiteral(" (") + keys + u')';
}

}  // namespace

CommandSet::CommandSet(WindowLink& link, QMainWindow& window) : QObject(&window), link_(link), window_(window)
{
    namespace say = desktop_text;
    const std::pair<MenuId, TextId> titles[] = {{MenuId::file, say::menuFile},   {MenuId::edit, say::menuEdit},
                                                {MenuId::view, say::menuView},   {MenuId::mark, say::menuMark},
                                                {MenuId::tools, say::menuTools}, {MenuId::help, say::menuHelp}};
    for (const auto& [id, title] : titles)
        menus_[id] = window.menuBar()->addMenu(shown(title));
    toolbar_ = window.addToolBar(shown(say::toolbarTitle));
    toolbar_->setObjectName(QStringLiteral("toolbar"));
    if (auto* const more = toolbar_->findChild<QWidget*>(QStringLiteral("qt_toolbar_ext_button")))
        more->setAccessibleName(shown(say::toolbarMore));
    connect(&link, &WindowLink::jobChanged, this, &CommandSet::refresh);
    connect(&link, &WindowLink::figuresChanged, this, &CommandSet::refresh);
    connect(&link, &WindowLink::currentRowChanged, this, &CommandSet::refresh);
}

QAction* CommandSet::add(const CommandSpec& spec)
{
    auto* const action = new QAction(shown(spec.label), this);
    action->setObjectName(QString::fromLatin1(spec.name));
    action->setShortcut(spec.keys);
    action->setIcon(commandIcon(action->objectName()));
    action->setToolTip(toolTipOf(*action));
    action->setIconText(action->iconText().remove(u'…').trimmed());  // three dots go by themselves
    action->setCheckable(spec.checkable);
    connect(action, &QAction::triggered, this, [run = spec.run] { run(); });
    QMenu* const menu = spec.submenu != nullptr ? spec.submenu : menus_.at(spec.menu);
    if (spec.beginsSection)
        menu->addSeparator();
    menu->addAction(action);
    if (spec.inToolbar)
        toolbar_->addAction(action);
    window_.addAction(action);  // its keys work while the menu bar is hidden
    entries_.push_back({action, spec.when, spec.leastMode});
    refresh();
    return action;
}

void CommandSet::arrangeToolbar(std::initializer_list<const char*> names)
{
    QList<QAction*> rest = toolbar_->actions();
    toolbar_->clear();
    for (const char* const name : names) {
        QAction* const action = find(QString::fromLatin1(name));
        if (*name == '\0')
            toolbar_->addSeparator();
        else if (rest.removeAll(action) > 0)
            toolbar_->addAction(action);
    }
    toolbar_->addActions(rest);
}

QMenu* CommandSet::addSubmenu(MenuId menu, const char* name, TextId label)
{
    QMenu* const added = menus_.at(menu)->addMenu(shown(label));
    added->setObjectName(QString::fromLatin1(name));
    added->setIcon(commandIcon(added->objectName()));
    return added;
}

QAction* CommandSet::find(const QString& name) const
{
    return findChild<QAction*>(name, Qt::FindDirectChildrenOnly);
}

void CommandSet::setMode(InterfaceMode mode)
{
    if (mode_ == mode)
        return;
    mode_ = mode;
    refresh();
    Q_EMIT modeChanged(mode);
}

void CommandSet::renewIcons()
{
    for (const Entry& entry : entries_)
        entry.action->setIcon(commandIcon(entry.action->objectName()));
    for (QMenu* const menu : window_.findChildren<QMenu*>())
        if (!menu->objectName().isEmpty())
            menu->setIcon(commandIcon(menu->objectName()));
}

void CommandSet::refresh()
{
    const unsigned held = holds();
    for (const Entry& entry : entries_) {
        entry.action->setEnabled((entry.when & held) == entry.when);
        entry.action->setVisible(rankOf(mode_) >= rankOf(entry.leastMode));
    }
}

unsigned CommandSet::holds() const
{
    const ListFigures& figures = link_.rows().figures();
    unsigned held = link_.job() == Job::none ? when::idle : when::busy;
    held |= figures.items > 0 ? when::hasItems : 0;
    held |= figures.ticked.items > 0 ? when::hasTicks : 0;
    held |= figures.selected.items > 0 ? when::isSelected : 0;
    held |= link_.currentItem() ? when::hasCurrent : 0;
    return held;
}

}  // namespace kelvane
