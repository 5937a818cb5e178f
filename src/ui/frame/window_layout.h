// Where the panes of a window are: arranged at first, as the person left them later.
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>

#include "app/questions.h"

class QDockWidget;
class QMainWindow;

namespace kelvane {

class Desktop;
class MainWindow;

// The panes of a window in the order in which they were added; that of its children follows who is in front.
[[nodiscard]] QList<QDockWidget*> panesInOrder(const QMainWindow& window);

// Owned by the window; on the main thread.
class WindowLayout final : public QObject {
    Q_OBJECT

public:
    // Of a pane: which one it was to be added.
    static constexpr const char* orderProperty = "kelvaneOrder";

    WindowLayout(MainWindow& window, Desktop& desktop);

    // Once all panes are there: as it was when the last window closed, or as it is at first.
    void restore(InterfaceMode mode);
    void reset(InterfaceMode mode);
    // The panes of a mode where they belong; the window keeps its size.
    void arrange(InterfaceMode mode);
    // For the next window, and the next run.
    void remember();

private:
    MainWindow& window_;
    Desktop& desktop_;
};

}  // namespace kelvane
