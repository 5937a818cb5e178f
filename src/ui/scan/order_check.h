// What is wrong with an order, and which folders it would search: asked while a person still writes it.
#pragma once

#include <QString>
#include <QStringList>

#include "ui/core/workbench.h"
#include "ui/scan/scan_order.h"

namespace kelvane {

struct OrderCheck {
    QStringList roots;    // as they would be walked
    QStringList dropped;  // a line each: the folder, and why it is left out
    QString problem;      // why no scan can begin; empty where one can
};

// On the window's thread: looks at folders.
[[nodiscard]] OrderCheck checkOrder(Workbench& bench, const ScanOrder& order);

}  // namespace kelvane
