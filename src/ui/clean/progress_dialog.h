// How far a clean-up, or taking one back, has come.
#pragma once

#include <QDialog>
#include <QPointer>
#include <cstdint>

class QLabel;
class QProgressBar;

namespace kelvane {

class WindowLink;

struct ProgressState {
    std::uint64_t items = 0, totalItems = 0;  // no total: nobody knows how long it takes
    std::uint64_t bytes = 0, totalBytes = 0;  // no total: bytes say nothing of the time
    QString current;
};

// Stands over the frame while the work lasts, so that nothing of the list changes under it. Its cancel, Escape and
// close button only ask for a stop.
class ProgressDialog final : public QDialog {
    Q_OBJECT

public:
    // The one of the window; made and shown when there is none. Deleted by finish().
    static ProgressDialog& show(WindowLink& link, const QString& title);
    static void finish(WindowLink& link);
    // Nothing happens when there is none.
    static void update(WindowLink& link, const ProgressState& state);

    void reject() override;

private:
    ProgressDialog(WindowLink& link, const QString& title);
    void take(const ProgressState& state);

    WindowLink& link_;
    QProgressBar* bar_;
    QLabel* counts_;
    QLabel* current_;
    QPointer<QLabel> status_;  // in the status line
};

}  // namespace kelvane
