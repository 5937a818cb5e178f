// What the running scan of a window tells the widgets of the scan.
#pragma once

#include <QObject>
#include <QStringList>

#include "engine/scan_observer.h"

namespace kelvane {

struct ScanTick {
    ScanProgress progress;
    std::uint64_t phaseMs = 0;  // since the phase began, without pauses
};

struct ScanOutcome {
    bool refused = false;    // it did not begin; `problem` says why
    bool cancelled = false;  // what was found until then is in the list
    bool trivial = false;    // there was hardly anything to compare
    std::int64_t rows = 0;
    std::uint32_t groups = 0;
    QString problem;
    QString notRead;  // a line for each of the first folders and files that took no part, with the reason
};

// On the main thread; owned by the scan's pane.
class ScanReports final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void began();
    void captioned(const QString& text);
    void ticked(const kelvane::ScanTick& tick);
    void noticed(const QString& text);
    void logged(const QStringList& lines);
    void ended(const kelvane::ScanOutcome& outcome);
};

}  // namespace kelvane
