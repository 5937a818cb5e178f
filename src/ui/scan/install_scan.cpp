#include "ui/scan/install_scan.h"

#include <QDockWidget>

#include "base/desktop_texts/scan.h"
#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/scan/kept_scans_menu.h"
#include "ui/scan/scan_pane.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

void addStarts(CommandSet& commands, ScanPane& pane)
{
    commands.add({.name = "scan.start",
                  .label = say::scanStart,
                  .menu = MenuId::file,
                  .run = [&pane] { pane.start(); },
                  .keys = QKeySequence(Qt::CTRL | Qt::Key_Return),
                  .when = when::idle,
                  .inToolbar = true,
                  .beginsSection = true});
    commands.add({.name = "scan.again",
                  .label = say::scanAgain,
                  .menu = MenuId::file,
                  .run = [&pane] { pane.startAgain(); },
                  .keys = QKeySequence(Qt::Key_F5),
                  .when = when::idle});
    commands.add({.name = "scan.new",
                  .label = say::scanNew,
                  .menu = MenuId::file,
                  .run = [&pane] { pane.clear(); },
                  .when = when::idle,
                  .leastMode = InterfaceMode::standard});
}

void addHolds(CommandSet& commands, WindowLink& link, ScanPane& pane)
{
    QAction* const pause = commands.add({.name = "scan.pause",
                                         .label = say::scanPause,
                                         .menu = MenuId::file,
                                         .run = [] {},
                                         .keys = QKeySequence(Qt::Key_Pause),
                                         .when = when::busy,
                                         .checkable = true});
    QObject::connect(pause, &QAction::toggled, &pane, &ScanPane::pause);
    QObject::connect(&pane, &ScanPane::paused, pause, &QAction::setChecked);
    commands.add({.name = "scan.stop",
                  .label = say::scanStop,
                  .menu = MenuId::file,
                  .run = [&link] { link.cancelJob(); },
                  .keys = QKeySequence(Qt::Key_Escape),
                  .when = when::busy,
                  .inToolbar = true});
}

void addKept(CommandSet& commands, WindowLink& link, ScanPane& pane)
{
    QMenu* const saved = commands.addSubmenu(MenuId::file, "menu.savedScans", say::savedScansMenu);
    QMenu* const history = commands.addSubmenu(MenuId::file, "menu.scanHistory", say::historyMenu);
    auto* const kept = new KeptScansMenu(link.desktop(), *saved, *history, pane);
    QObject::connect(kept, &KeptScansMenu::opened, &pane, &ScanPane::showOrder);
    QObject::connect(kept, &KeptScansMenu::runWanted, &pane, [&pane](const ScanOrder& order) {
        pane.showOrder(order);
        pane.run(order);
    });
    QObject::connect(kept, &KeptScansMenu::saved, &link, [&link](const QString& name) {
        Q_EMIT link.statusTold(shown(say::savedSaved, {name.toStdString()}));
    });
    commands.add({.name = "scan.save",
                  .label = say::scanSave,
                  .menu = MenuId::file,
                  .run = [&pane, kept] { kept->saveAs(pane.order()); },
                  .leastMode = InterfaceMode::standard});
}

}  // namespace

void installScan(const FrameParts& parts)
{
    auto* const pane = new ScanPane(parts.link);
    parts.window.addPane(pane, "pane.scan", say::scanPaneTitle, Qt::LeftDockWidgetArea);
    addStarts(parts.commands, *pane);
    addHolds(parts.commands, parts.link, *pane);
    addKept(parts.commands, parts.link, *pane);
}

}  // namespace kelvane
