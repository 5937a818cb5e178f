// What happened in this window since it was opened: every status text, and whatever was skipped, with its time.
#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

class QPlainTextEdit;

namespace kelvane {

class WindowLink;

class LogPane final : public QWidget {
    Q_OBJECT

public:
    explicit LogPane(WindowLink& link);

private:
    void add(const QString& line);
    void showWaiting();

    QPlainTextEdit* lines_;
    QStringList waiting_;
    QTimer turn_;  // in which some of them are shown
};

}  // namespace kelvane
