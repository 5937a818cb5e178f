// Which properties are columns of the list.
#pragma once

#include <QDialog>
#include <vector>

#include "ui/list/list_columns.h"

class QLineEdit;
class QListWidget;
class QVBoxLayout;

namespace kelvane {

// Those in view stand first, in their order, then all others by title. Rows are moved by buttons and keys.
class ColumnsDialog final : public QDialog {
    Q_OBJECT

public:
    ColumnsDialog(const std::vector<ListColumn>& inView, const std::vector<ListColumn>& others, QWidget* parent);

    // Of those with a tick, in the order of the list; new ones come last unless they were moved.
    [[nodiscard]] std::vector<std::string> chosen() const;
    // The first columns are wanted back: chosen() is empty.
    [[nodiscard]] bool wantsDefaults() const { return defaults_; }

private:
    void add(const ListColumn& column, bool ticked);
    void makeMovers(QVBoxLayout& lines);
    void moveCurrent(int step);
    void makeButtons();
    void narrow(const QString& text);

    QLineEdit* search_;
    QListWidget* list_;
    bool defaults_ = false;
};

}  // namespace kelvane
