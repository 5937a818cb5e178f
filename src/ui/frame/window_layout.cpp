#include "ui/frame/window_layout.h"

#include <QDockWidget>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QToolBar>
#include <QVariant>
#include <algorithm>

#include "ui/core/desktop.h"
#include "ui/frame/commands.h"
#include "ui/frame/main_window.h"

namespace kelvane {
namespace {

const QString stateName = QStringLiteral("windowState"), placeName = QStringLiteral("windowPlace");
// Of the panes; what another version kept is not taken.
constexpr int stateVersion = 1;
constexpr QSize firstSize{1440, 900};
constexpr QSize frameRoom{16, 56};  // for borders and the title, which nobody knows before the window is shown
constexpr int sideWidth = 300, bottomHeight = 170;

// The status line too has to be on the screen.
QSize firstSizeOn(const QScreen& screen)
{
    return firstSize.boundedTo(screen.availableSize() - frameRoom);
}

QList<QDockWidget*> panesAt(const MainWindow& window, Qt::DockWidgetArea area)
{
    QList<QDockWidget*> found = panesInOrder(window);
    found.removeIf([&](const QDockWidget* pane) { return window.homeOf(*pane) != area; });
    return found;
}

// As tabs, the first one in front.
void stack(MainWindow& window, const QList<QDockWidget*>& panes, Qt::DockWidgetArea area, bool shown)
{
    for (QDockWidget* const pane : panes) {
        pane->setFloating(false);
        window.addDockWidget(area, pane);
        pane->setVisible(shown);
    }
    for (qsizetype next = 1; next < panes.size(); ++next)
        window.tabifyDockWidget(panes[next - 1], panes[next]);
    if (shown && !panes.isEmpty())
        panes.front()->raise();
}

}  // namespace

QList<QDockWidget*> panesInOrder(const QMainWindow& window)
{
    QList<QDockWidget*> panes = window.findChildren<QDockWidget*>(Qt::FindDirectChildrenOnly);
    std::sort(panes.begin(), panes.end(), [](const QDockWidget* one, const QDockWidget* other) {
        return one->property(WindowLayout::orderProperty).toInt() <
               other->property(WindowLayout::orderProperty).toInt();
    });
    return panes;
}

WindowLayout::WindowLayout(MainWindow& window, Desktop& desktop) : QObject(&window), window_(window), desktop_(desktop)
{
    // The sides reach down to the status line, so that the scan's definition has room.
    window.setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    window.setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    window.setDockOptions(QMainWindow::AllowTabbedDocks | QMainWindow::AllowNestedDocks);
}

void WindowLayout::restore(InterfaceMode mode)
{
    window_.resize(firstSizeOn(*QGuiApplication::primaryScreen()));
    arrange(mode);
    window_.restoreGeometry(desktop_.memory.value(placeName));
    window_.restoreState(desktop_.memory.value(stateName), stateVersion);
}

void WindowLayout::reset(InterfaceMode mode)
{
    if (window_.isMaximized() || window_.isFullScreen())
        window_.showNormal();
    window_.resize(firstSizeOn(*window_.screen()));
    arrange(mode);
    remember();
}

void WindowLayout::remember()
{
    desktop_.memory.setValue(placeName, window_.saveGeometry());
    desktop_.memory.setValue(stateName, window_.saveState(stateVersion));
}

void WindowLayout::arrange(InterfaceMode mode)
{
    const bool simple = mode == InterfaceMode::beginner;
    const auto left = panesAt(window_, Qt::LeftDockWidgetArea), right = panesAt(window_, Qt::RightDockWidgetArea),
               bottom = panesAt(window_, Qt::BottomDockWidgetArea);
    stack(window_, left, Qt::LeftDockWidgetArea, true);
    stack(window_, right, Qt::RightDockWidgetArea, !simple);
    stack(window_, bottom, Qt::BottomDockWidgetArea, !simple);
    if (QToolBar* const toolbar = window_.commands().toolbar()) {
        window_.addToolBar(Qt::TopToolBarArea, toolbar);
        toolbar->show();
    }
    for (const auto& side : {left, right})
        if (!side.isEmpty())
            window_.resizeDocks({side.front()}, {sideWidth}, Qt::Horizontal);
    if (!bottom.isEmpty())
        window_.resizeDocks({bottom.front()}, {bottomHeight}, Qt::Vertical);
}

}  // namespace kelvane
