#include "ui/frame/pane_walk.h"

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <algorithm>

#include "ui/frame/window_layout.h"

namespace kelvane {
namespace {

// In the order in which they are read: the left side, the middle, the right side, what is above and below.
QList<QWidget*> panesOf(const QMainWindow& window)
{
    QList<QWidget*> panes;
    const QList<QDockWidget*> docks = panesInOrder(window);
    const auto addFrom = [&](Qt::DockWidgetArea area) {
        for (QDockWidget* const dock : docks)
            if (!dock->isHidden() && window.dockWidgetArea(dock) == area)
                panes.push_back(dock);
    };
    addFrom(Qt::LeftDockWidgetArea);
    if (window.centralWidget() != nullptr)
        panes.push_back(window.centralWidget());
    for (const auto area : {Qt::RightDockWidgetArea, Qt::TopDockWidgetArea, Qt::BottomDockWidgetArea})
        addFrom(area);
    return panes;
}

bool takesFocus(const QWidget& widget, const QWidget& pane)
{
    return (widget.focusPolicy() & Qt::TabFocus) == Qt::TabFocus && widget.isEnabled() && widget.isVisibleTo(&pane);
}

QWidget* firstIn(QWidget& pane)
{
    for (QWidget* next = pane.nextInFocusChain(); next != nullptr && next != &pane; next = next->nextInFocusChain())
        if (pane.isAncestorOf(next) && takesFocus(*next, pane))
            return next;
    return nullptr;
}

bool enter(QWidget& pane)
{
    QWidget* wanted = pane.focusWidget();
    if (wanted == nullptr || !takesFocus(*wanted, pane))
        wanted = pane.focusProxy() != nullptr ? pane.focusProxy() : firstIn(pane);
    if (wanted == nullptr)
        return false;
    pane.raise();
    if (pane.isWindow())
        pane.activateWindow();
    wanted->setFocus(Qt::TabFocusReason);
    return true;
}

}  // namespace

void goToNextPane(QMainWindow& window, int step)
{
    const QList<QWidget*> panes = panesOf(window);
    const QWidget* const focused = QApplication::focusWidget();
    const auto here = std::find_if(panes.begin(), panes.end(), [&](const QWidget* pane) {
        return focused != nullptr && (pane == focused || pane->isAncestorOf(focused));
    });
    const qsizetype count = panes.size();
    qsizetype place = here != panes.end() ? here - panes.begin() : step > 0 ? -1 : count;
    for (qsizetype tried = 0; tried < count; ++tried) {
        place = (place + step + count) % count;
        if (enter(*panes[place]))
            return;
    }
}

}  // namespace kelvane
