#include "ui/clean/install_clean.h"

#include <QDockWidget>

#include "base/desktop_texts/clean.h"
#include "ui/clean/clean_job.h"
#include "ui/clean/log_viewer.h"
#include "ui/clean/mark_wizard_dialog.h"
#include "ui/clean/marking_pane.h"
#include "ui/clean/runs_dialog.h"
#include "ui/clean/settling.h"
#include "ui/clean/taking_back.h"
#include "ui/core/window_link.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

void addMarkCommands(const FrameParts& parts)
{
    WindowLink& link = parts.link;
    parts.commands.add({.name = "mark.wizard",
                        .label = say::commandWizard,
                        .menu = MenuId::mark,
                        .run = [&link] { openMarkWizard(link); },
                        .keys = QKeySequence(Qt::CTRL | Qt::Key_M),
                        .when = when::idle | when::hasItems,
                        .inToolbar = true,
                        .beginsSection = true});
}

void addCleanCommands(const FrameParts& parts, const CleanMemory& memory)
{
    WindowLink& link = parts.link;
    parts.commands.add(
        {.name = "clean.start",
         .label = say::commandCleanUp,
         .menu = MenuId::tools,
         .run = [&link, memory] { link.run([memory](Workbench& bench) { cleanUpMarked(bench, *memory); }); },
         .keys = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
         .when = when::idle | when::hasItems,
         .inToolbar = true,
         .beginsSection = true});
    parts.commands.add({.name = "clean.undo",
                        .label = say::commandTakeBack,
                        .menu = MenuId::tools,
                        .run = [&link] { link.run([](Workbench& bench) { takeBackLast(bench); }); },
                        .when = when::idle});
    parts.commands.add({.name = "clean.runs", .label = say::commandRuns, .menu = MenuId::tools, .run = [&link] {
                            (new RunsDialog(link))->open();
                        }});
    parts.commands.add(
        {.name = "clean.log", .label = say::commandCleanupLog, .menu = MenuId::tools, .run = [&link, memory] {
             openLastLog(link, memory);
         }});
    QAction* const direct = parts.commands.add(
        {.name = "clean.deleteDirectly",
         .label = say::commandDeleteDirectly,
         .menu = MenuId::edit,
         .run = [&link, memory] { link.run([memory](Workbench& bench) { deleteSelected(bench, *memory); }); },
         .keys = QKeySequence(Qt::SHIFT | Qt::Key_Delete),  // Delete alone only takes off the list
         .when = when::idle | when::isSelected,
         .leastMode = InterfaceMode::advanced,
         .beginsSection = true});
    // Its keys are for whoever is in the list: in a pane's list they mean what is selected there.
    parts.window.removeAction(direct);
    parts.window.centralWidget()->addAction(direct);
    direct->setShortcutContext(Qt::WidgetWithChildrenShortcut);
}

}  // namespace

void installClean(const FrameParts& parts)
{
    const auto memory = std::make_shared<CleanupMemory>();
    addMarkCommands(parts);
    addCleanCommands(parts, memory);
    QDockWidget* const pane = parts.window.addPane(new MarkingPane(parts.link, parts.commands), "pane.marking",
                                                   say::paneMarking, Qt::RightDockWidgetArea);
    pane->hide();
    parts.link.run([](Workbench& bench) {
        if (bench.instance().isFirst())
            settleEarlierRuns(bench);
    });
}

}  // namespace kelvane
