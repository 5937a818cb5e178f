// The page of earlier clean-ups: what each did, and taking it back as a whole or item by item.
#pragma once

#include <QDialog>

#include "ui/clean/runs_data.h"

class QLabel;
class QPushButton;
class QTreeView;

namespace kelvane {

class TextTableModel;
class WindowLink;

// Deletes itself when it is closed. Reads on the window's thread, and again after every work of the window.
class RunsDialog final : public QDialog {
    Q_OBJECT

public:
    explicit RunsDialog(WindowLink& link);

private:
    QTreeView* makeTable(const char* name, TextTableModel& model, TextId title);
    QWidget* makeButtons();
    void read();
    void takeRuns(std::vector<RunLine> runs);
    void takeItems(RunNumber run, std::vector<RunItemLine> items);
    void readItems();
    void showItems(std::vector<RunItemLine> items);
    void enableButtons();
    [[nodiscard]] bool canTakeBackSelected() const;
    void takeBackChosen(bool itemsOnly);
    [[nodiscard]] const RunLine* current() const;

    WindowLink& link_;
    TextTableModel* runModel_;
    TextTableModel* itemModel_;
    QTreeView* runTable_;
    QTreeView* itemTable_;
    QLabel* none_;
    QPushButton* takeAll_ = nullptr;
    QPushButton* takeItems_ = nullptr;
    std::vector<RunLine> runs_;
    std::vector<RunItemLine> items_;
};

}  // namespace kelvane
