// What happened in this window since it was opened: every status text, and whatever was skipped, with its time.
#pragma once

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

    QPlainTextEdit* lines_;
};

}  // namespace kelvane
