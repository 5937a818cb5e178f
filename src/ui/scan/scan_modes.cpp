#include "ui/scan/scan_modes.h"

namespace kelvane {

ScanOrder allowedOrder(ScanOrder order, InterfaceMode mode)
{
    if (mode == InterfaceMode::advanced)
        return order;
    order.definition.set(scan_flag::protect, true);
    order.definition.set(scan_flag::skipLinks, true);
    order.archives = false;
    order.exhaustive = false;
    return order;
}

ScanOrder lastOrder(const Settings& settings)
{
    ScanOrder order;
    if (settings.lastScan) {
        order.definition = *settings.lastScan;
    } else {
        order.definition.setCategory(Category::custom);
        order.definition.set(scan_flag::contents, true);
        order.definition.set(scan_flag::sameType | scan_flag::ignoreSmall, false);
    }
    order.archives = (settings.flags & option_flag::enterVirtualFolders) != 0;
    return order;
}

}  // namespace kelvane
