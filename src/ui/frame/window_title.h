// What a window is about, for its title and for the list of windows that the desktop shows.
#pragma once

#include <QObject>

class QMainWindow;

namespace kelvane {

class WindowLink;
class Workbench;

// The file that the list was loaded from or saved to, else the folders that were searched; empty without a list.
[[nodiscard]] QString whatWasSearched(Workbench& bench);

// Owned by the window.
class WindowTitle final : public QObject {
    Q_OBJECT

public:
    WindowTitle(WindowLink& link, QMainWindow& window);

private:
    void ask();

    WindowLink& link_;
    QMainWindow& window_;
};

}  // namespace kelvane
