#include "ui/frame/main_window.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QMenu>
#include <QStatusBar>

#include "ui/core/text.h"
#include "ui/core/window_link.h"
#include "ui/frame/rooms.h"

namespace kelvane {

MainWindow::MainWindow(WindowLink& link) : link_(link), commands_(new CommandSet(link, *this))
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Kelvane"));
    resize(1100, 700);
    connect(&link, &WindowLink::statusTold, this, [this](const QString& text) { statusBar()->showMessage(text); });
    installRooms({link, *commands_, *this});
}

QDockWidget* MainWindow::addPane(QWidget* content, const char* name, TextId title, Qt::DockWidgetArea area)
{
    auto* const dock = new QDockWidget(shown(title), this);
    dock->setObjectName(QString::fromLatin1(name));
    dock->setWidget(content);
    addDockWidget(area, dock);
    commands_->menu(MenuId::view)->addAction(dock->toggleViewAction());
    return dock;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();  // the window's own thread decides, and the frame goes when that has ended
    link_.requestClose();
}

}  // namespace kelvane
