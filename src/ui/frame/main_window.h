// The frame of a results window: menus, toolbar, status line, panes.
#pragma once

#include <QMainWindow>
#include <filesystem>
#include <map>
#include <vector>

#include "app/questions.h"
#include "base/text_table.h"

class QMenu;

namespace kelvane {

class CommandSet;
class WindowLayout;
class WindowLink;

// Owned by the link, which outlives it.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(WindowLink& link);

    [[nodiscard]] WindowLink& link() const { return link_; }
    [[nodiscard]] CommandSet& commands() const { return *commands_; }

    // A pane that can be docked anywhere, closed, and opened again from the view menu. `name` is for the layout that is
    // remembered, and for tests. Takes the widget.
    QDockWidget* addPane(QWidget* content, const char* name, TextId title, Qt::DockWidgetArea area);
    [[nodiscard]] QMenu* panesMenu() const { return panes_; }
    // Where a pane belongs that nobody has moved.
    [[nodiscard]] Qt::DockWidgetArea homeOf(const QDockWidget& pane) const;

    // As it is at first: panes, sizes, toolbar.
    void resetLayout();
    void showFullScreen(bool on);

protected:
    // A person closes the window: asked first while a job runs.
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void followOptions();
    void leave();
    void askToLeave();
    void serveTarget();
    void openOrSearch(const std::vector<std::filesystem::path>& paths);

    WindowLink& link_;
    std::map<const QDockWidget*, Qt::DockWidgetArea> homes_;
    CommandSet* commands_;
    WindowLayout* layout_;
    QMenu* panes_ = nullptr;
};

}  // namespace kelvane
