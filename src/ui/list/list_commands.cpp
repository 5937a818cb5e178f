#include "ui/list/list_commands.h"

#include <QApplication>

#include "base/desktop_texts/list.h"
#include "results/mark_commands.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

struct CommandRow {
    MarkCommand command;
    const char* name;
    MenuId menu;
    QKeySequence keys;
    unsigned when;
    bool beginsSection = false;
};

void carryOutAndTell(WindowLink& link, MarkCommand command)
{
    link.run([command](Workbench& bench) {
        const CommandAnswer answer = carryOut(command, bench.results(), bench.storedMarks());
        if (answer.message)
            bench.tell(text(*answer.message));
        if (answer.beep)
            bench.toMain([](WindowLink&) { QApplication::beep(); });
    });
}

std::vector<CommandRow> commandRows()
{
    using enum MarkCommand;
    return {
        {invertTicks, "mark.invert", MenuId::mark, Qt::CTRL | Qt::Key_I, when::hasItems, true},
        {clearTicks, "mark.clear", MenuId::mark, Qt::CTRL | Qt::SHIFT | Qt::Key_I, when::hasItems},
        {storeMarks, "mark.store", MenuId::mark, {}, when::hasItems, true},
        {tickStored, "mark.tickStored", MenuId::mark, {}, when::hasItems},
        {untickStored, "mark.untickStored", MenuId::mark, {}, when::hasItems},
        {showTicked, "view.ticked", MenuId::view, Qt::CTRL | Qt::Key_T, when::hasItems, true},
        {showAll, "view.showAll", MenuId::view, Qt::CTRL | Qt::SHIFT | Qt::Key_T, when::hasItems},
        {removeSelection, "edit.remove", MenuId::edit, QKeySequence::Delete, when::isSelected, true},
        {regroupSelection, "edit.regroup", MenuId::edit, Qt::CTRL | Qt::Key_G, when::isSelected},
        {mergeWithPrevious, "edit.merge", MenuId::edit, Qt::CTRL | Qt::SHIFT | Qt::Key_G, when::isSelected},
    };
}

}  // namespace

void installMarkCommands(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    for (const CommandRow& row : commandRows())
        parts.commands.add({.name = row.name,
                            .label = nameOf(row.command),
                            .menu = row.menu,
                            .run = [&link, command = row.command] { carryOutAndTell(link, command); },
                            .keys = row.keys,
                            .when = row.when,
                            .beginsSection = row.beginsSection});
}

void installEditCommands(const FrameParts& parts, ResultsView& view)
{
    namespace say = desktop_text;
    WindowLink& link = parts.link;
    QAction* const undo =
        parts.commands.add({.name = "edit.undo",
                            .label = say::listUndo,
                            .menu = MenuId::edit,
                            .run = [&link] { link.run([](Workbench& bench) { bench.results().undo(); }); },
                            .keys = QKeySequence::Undo});
    QAction* const redo =
        parts.commands.add({.name = "edit.redo",
                            .label = say::listRedo,
                            .menu = MenuId::edit,
                            .run = [&link] { link.run([](Workbench& bench) { bench.results().redo(); }); },
                            .keys = Qt::CTRL | Qt::Key_Y});
    const auto enable = [&link, undo, redo] {
        undo->setEnabled(link.rows().figures().canUndo);
        redo->setEnabled(link.rows().figures().canRedo);
    };
    for (const auto signal : {&WindowLink::figuresChanged, &WindowLink::currentRowChanged})
        QObject::connect(&link, signal, undo, enable);  // after the command set, which knows nothing of history
    QObject::connect(&link, &WindowLink::jobChanged, undo, enable);
    enable();
    parts.commands.add({.name = "edit.selectAll",
                        .label = say::listSelectAll,
                        .menu = MenuId::edit,
                        .run = [&view] { view.selectAll(); },
                        .keys = QKeySequence::SelectAll,
                        .when = when::hasItems,
                        .beginsSection = true});
}

}  // namespace kelvane
