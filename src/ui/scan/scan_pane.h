// The pane in which a scan is defined, started and watched.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

#include "app/questions.h"
#include "ui/core/workbench.h"
#include "ui/scan/pause_switch.h"
#include "ui/scan/scan_order.h"
#include "ui/scan/scan_reports.h"

class QLabel;
class QPushButton;
class QStackedWidget;

namespace kelvane {

class BeginnerPage;
class ProgressPanel;
class ScanForm;
class WindowLink;

// Main thread. The link outlives it.
class ScanPane final : public QWidget {
    Q_OBJECT

public:
    explicit ScanPane(WindowLink& link, QWidget* parent = nullptr);

    // Beginners see the express page in place of the form.
    void setMode(InterfaceMode mode);
    // What start() would search by.
    [[nodiscard]] ScanOrder order() const;
    void showOrder(const ScanOrder& order);
    // The order that a first start begins with.
    void clear();

    // Starts what the form says; a problem is shown there.
    void start() { run(order()); }
    // Starts the last scan of this window again, whatever the form says by now; before the first one that of any
    // window.
    void startAgain();
    void run(const ScanOrder& order);
    void pause(bool paused);

Q_SIGNALS:
    void paused(bool paused);
    // A scan that was begun from here ended with groups in the list, while the focus was still here.
    void found();

private:
    void begin(const ScanOrder& order);
    void makeLayout();
    void listen();
    void listenToScan();
    void check();
    void followJob(Job job);
    void scanEnded(const ScanOutcome& outcome);
    void showProblem(const QString& problem);

    WindowLink& link_;
    ScanReports* reports_;
    ScanForm* form_;
    BeginnerPage* express_;
    QStackedWidget* pages_;
    ProgressPanel* progress_;
    QLabel* notRead_;
    QPushButton* find_;
    std::shared_ptr<PauseSwitch> pause_;
    QTimer checkSoon_;
    QPointer<QMessageBox> notice_;              // while it is shown
    std::optional<ScanOrder> wanted_, latest_;  // the latest one that was asked for here, and that began
    InterfaceMode mode_ = InterfaceMode::standard;
};

}  // namespace kelvane
