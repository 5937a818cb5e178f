// The window's view of its own running scan.
#pragma once

#include <QPointer>
#include <QStringList>
#include <mutex>
#include <optional>

#include "ui/core/workbench.h"
#include "ui/scan/pause_switch.h"
#include "ui/scan/scan_reports.h"

namespace kelvane {

// Passes on what the scan tells, and lets the window live meanwhile: work that was posted is done between the scan's
// items, also where the scan runs on a thread of its own at low priority, since the window's own thread does nothing
// then but wait for it.
class ScanWatcher final : public ScanObserver {
public:
    // All that is handed over outlives the scan; the reports may go before.
    ScanWatcher(Workbench& bench, QPointer<ScanReports> reports, const PauseSwitch& pause);

    void status(std::u16string_view text) override { bench_.tell(text); }
    void caption(std::u16string_view text) override;
    void progress(const ScanProgress& progress) override;
    void notice(std::u16string_view text) override;
    void skipped(const SkippedItem& item) override;
    void undescribed(const SkippedItem& item) override;
    void sound(Sound sound) override;
    void nothingFound(std::u16string_view text) override { bench_.tell(text); }

    // Sends the lines that are left.
    void flush();
    // The first of what could not be read, a line each, and at the end how many more there were.
    [[nodiscard]] QStringList firstSkipped() const;

private:
    void waitWhilePaused();
    [[nodiscard]] std::uint64_t phaseTime(ScanPhase phase);
    void list(const QString& line);  // under the lock

    Workbench& bench_;
    const QPointer<ScanReports> reports_;
    const PauseSwitch& pause_;
    std::optional<ScanPhase> phase_;
    std::uint64_t phaseBegan_ = 0;  // later by the time of pauses
    mutable std::mutex mutex_;      // skipped() also comes from reading threads
    QStringList lines_, first_;
    std::uint64_t skipped_ = 0;
    std::uint64_t listed_ = 0;
};

}  // namespace kelvane
