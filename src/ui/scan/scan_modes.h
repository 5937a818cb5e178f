// What the interface modes let a scan do.
#pragma once

#include "app/questions.h"
#include "app/setting_bits.h"
#include "app/settings.h"
#include "ui/scan/scan_order.h"

namespace kelvane {

// The order with safe values for whatever the mode does not offer: system folders, links and archives stay out, and
// alike files are found the quick way.
[[nodiscard]] ScanOrder allowedOrder(ScanOrder order, InterfaceMode mode);

// The definition last used; where there is none, exact copies of every kind.
[[nodiscard]] ScanOrder lastOrder(const Settings& settings);

}  // namespace kelvane
