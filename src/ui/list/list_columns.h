// The columns of the list: what the window's thread shows of each file, and what the main thread knows of it.
#pragma once

#include <QString>
#include <string>
#include <vector>

#include "ui/core/workbench.h"

namespace kelvane {

// As the main thread has it: apart from the catalogue, which belongs to the list's session.
struct ListColumn {
    std::string name;  // canonical
    QString title;
    bool rightAligned = false;
    friend bool operator==(const ListColumn&, const ListColumn&) = default;
};

// On the window's thread. Those in view from the left: at first name, folder, size and date, then what the scan gave.
// Empty without a session.
[[nodiscard]] const std::vector<PropRef>& columnsInView(Workbench& bench);
[[nodiscard]] std::vector<ListColumn> describedColumns(Workbench& bench);
// All other properties, by title.
[[nodiscard]] std::vector<ListColumn> furtherColumns(Workbench& bench);
// Unknown names are passed over; without any known one the first columns come back.
void chooseColumns(Workbench& bench, const std::vector<std::string>& names);

}  // namespace kelvane
