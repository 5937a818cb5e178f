// The pane in which a scan is defined, started and watched.
#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <memory>

#include "ui/scan/pause_switch.h"
#include "ui/scan/scan_order.h"
#include "ui/scan/scan_reports.h"

class QPushButton;

namespace kelvane {

class ProgressPanel;
class ScanForm;
class WindowLink;

// Main thread. The link outlives it.
class ScanPane final : public QWidget {
    Q_OBJECT

public:
    explicit ScanPane(WindowLink& link, QWidget* parent = nullptr);

    // Starts what the form says; a problem is shown beside the form.
    void start();
    // Starts the last scan again, whatever the form says by now.
    void startAgain();
    void pause(bool paused);
    // An empty form.
    void clear();
    void showOrder(const ScanOrder& order);

private:
    void makeLayout();
    void listen();
    void run(const ScanOrder& order);
    void check();
    void scanEnded(const ScanOutcome& outcome);
    void askToRevise();
    void showNotice(const QString& text);

    WindowLink& link_;
    ScanReports* reports_;
    ScanForm* form_;
    ProgressPanel* progress_;
    QPushButton* find_;
    std::shared_ptr<PauseSwitch> pause_;
    QTimer checkSoon_;
};

}  // namespace kelvane
