// Dialogs of one window, one at a time.
#pragma once

#include <QObject>
#include <QPointer>
#include <deque>

class QDialog;

namespace kelvane {

// Two questions at once, one on top of the other, are answered by accident. On the main thread.
class BoxQueue final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Opens the dialog, now or when those before it are closed.
    void open(QDialog* dialog);

private:
    void openNext();

    std::deque<QPointer<QDialog>> waiting_;
    QPointer<QDialog> shown_;
};

}  // namespace kelvane
