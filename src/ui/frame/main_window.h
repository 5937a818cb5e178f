// The frame of a results window: menus, toolbar, status line, panes.
#pragma once

#include <QMainWindow>

#include "base/text_table.h"

namespace kelvane {

class CommandSet;
class WindowLink;

// Owned by the link, which outlives it.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(WindowLink& link);

    [[nodiscard]] WindowLink& link() const { return link_; }

    // A pane that can be docked anywhere, closed, and opened again from the view menu. `name` is for the layout that is
    // remembered, and for tests. Takes the widget.
    QDockWidget* addPane(QWidget* content, const char* name, TextId title, Qt::DockWidgetArea area);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    WindowLink& link_;
    CommandSet* commands_;
};

}  // namespace kelvane
