// Tips, one at a time; shown at the start as long as a person wants that.
#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace kelvane {

class WindowLink;

// Owned by the frame of the window. Each opening goes on with a tip of its own, by the count of starts.
class TipsDialog final : public QDialog {
    Q_OBJECT

public:
    explicit TipsDialog(WindowLink& link);

    [[nodiscard]] static int count();

private:
    [[nodiscard]] QWidget* makeButtons();
    void step(int by);

    WindowLink& link_;
    int at_ = 0;
    QLabel* tip_;
    QLabel* number_;
    QPushButton* next_ = nullptr;
};

}  // namespace kelvane
