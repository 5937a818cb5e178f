// Where the panes of a window are: arranged at first, as the person left them later.
#pragma once

#include <QByteArray>
#include <QObject>

#include "app/questions.h"

namespace kelvane {

class Desktop;
class MainWindow;

// Owned by the window; on the main thread.
class WindowLayout final : public QObject {
    Q_OBJECT

public:
    WindowLayout(MainWindow& window, Desktop& desktop);

    // Once all panes are there: as it was when the last window closed, or as it is at first.
    void restore(InterfaceMode mode);
    void reset(InterfaceMode mode);
    // For the next window, and the next run.
    void remember();

private:
    void arrange(InterfaceMode mode);

    MainWindow& window_;
    Desktop& desktop_;
};

}  // namespace kelvane
