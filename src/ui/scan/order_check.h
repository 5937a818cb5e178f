// What is wrong with an order, and which folders it would search: asked while a person still writes it.
#pragma once

#include <QString>
#include <QStringList>

#include "engine/root_list.h"
#include "ui/core/workbench.h"
#include "ui/scan/scan_order.h"

namespace kelvane {

struct OrderCheck {
    QStringList roots;        // as they would be walked
    QStringList dropped;      // a line each: the folder, and why it is left out
    QStringList covered;      // likewise: folders that nobody ticked, and that are searched along with another
    QString criteriaProblem;  // why nothing can be compared; empty where it can
    // Why no scan can begin; empty where one can.
    [[nodiscard]] QString problem() const;
};

// "lies in a protected folder": after the name of the folder.
[[nodiscard]] QString droppedText(const DroppedRoot& root, const Settings& settings);

// On the window's thread: looks at folders. `unticked` are those of the person's list that are not in the order.
[[nodiscard]] OrderCheck checkOrder(Workbench& bench, const ScanOrder& order,
                                    const std::vector<std::string>& unticked = {});

}  // namespace kelvane
