#include "ui/scan/install_scan.h"

#include <QDockWidget>

#include "ui/core/window_link.h"
#include "ui/scan/scan_pane.h"

namespace kelvane {
namespace {

namespace say = desktop_text;

void addRunCommands(CommandSet& commands, WindowLink& link, ScanPane& pane)
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
    commands.add({.name = "scan.stop",
                  .label = say::scanStop,
                  .menu = MenuId::file,
                  .run = [&link] { link.cancelJob(); },
                  .keys = QKeySequence(Qt::Key_Escape),
                  .when = when::busy,
                  .inToolbar = true});
    commands.add({.name = "scan.new",
                  .label = say::scanNew,
                  .menu = MenuId::file,
                  .run = [&pane] { pane.clear(); },
                  .when = when::idle});
}

}  // namespace

void installScan(const FrameParts& parts)
{
    auto* const pane = new ScanPane(parts.link);
    parts.window.addPane(pane, "pane.scan", say::scanPaneTitle, Qt::LeftDockWidgetArea);
    addRunCommands(parts.commands, parts.link, *pane);
}

}  // namespace kelvane
