// The line at the foot of a window: what just happened, what is marked, how much is in view.
#pragma once

#include <QObject>

class QLabel;
class QMainWindow;

namespace kelvane {

class WindowLink;

// Owned by the window.
class StatusLine final : public QObject {
    Q_OBJECT

public:
    StatusLine(WindowLink& link, QMainWindow& window);

private:
    void askForTexts();

    WindowLink& link_;
    QLabel* marked_;
    QLabel* items_;
    bool asked_ = false;  // an answer is on its way
    bool again_ = false;  // and is out of date already
};

}  // namespace kelvane
