// The pane that shows what is marked.
#pragma once

#include <QWidget>

#include "ui/clean/marking_figures.h"

class QLabel;
class QTimer;
class QTreeView;

namespace kelvane {

class CommandSet;
class TextTableModel;
class WindowLink;

class MarkingPane final : public QWidget {
    Q_OBJECT

public:
    MarkingPane(WindowLink& link, const CommandSet& commands);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QTreeView* makeFolders();
    QWidget* makeButtons(const CommandSet& commands);
    void showSums();
    void askFolders();
    void takeFolders(const MarksByFolder& marks);

    WindowLink& link_;
    QLabel* sum_;
    QLabel* lost_;
    TextTableModel* folders_;
    QTimer* delay_;
    bool asked_ = false;  // the folders are on their way
    bool again_ = false;  // and out of date already
};

}  // namespace kelvane
