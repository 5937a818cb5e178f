// Runs a scan into the list of its window.
#pragma once

#include <QPointer>
#include <memory>

#include "ui/core/workbench.h"
#include "ui/scan/pause_switch.h"
#include "ui/scan/scan_order.h"
#include "ui/scan/scan_reports.h"

namespace kelvane {

// On the window's thread, to the end of the scan; the window is served meanwhile. An order that makes no sense is
// refused and leaves the list as it is. Reports may be gone at any time.
void runOrderedScan(Workbench& bench, const ScanOrder& order, QPointer<ScanReports> reports,
                    std::shared_ptr<PauseSwitch> pause);

// The engine's options for an order. `complaint`: see Desktop::engineOptions().
[[nodiscard]] EngineOptions optionsFor(const ScanOrder& order, const Settings& settings, const Desktop& desktop,
                                       std::string* complaint = nullptr);

}  // namespace kelvane
