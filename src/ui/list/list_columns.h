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
    bool given = false;  // by the scan: it is there in lists of such scans only
    QString sample{};    // as long as its texts usually get; empty where they may be of any length
    friend bool operator==(const ListColumn&, const ListColumn&) = default;
};

// What a person made of the columns, in whatever list that was.
struct KeptColumns {
    struct Chosen {
        std::string name;
        bool given = false;
    };
    std::vector<Chosen> chosen;        // from the left; none: nobody changed anything
    std::vector<std::string> without;  // not wanted, even where the scan gives them
};

// On the window's thread. Those in view from the left: at first name, folder, size and date, then what the scan gave.
// Empty without a session.
[[nodiscard]] const std::vector<PropRef>& columnsInView(Workbench& bench);
[[nodiscard]] std::vector<ListColumn> describedColumns(Workbench& bench);
// All other properties, by title.
[[nodiscard]] std::vector<ListColumn> furtherColumns(Workbench& bench);
// What was kept is put in force for this list: unknown names are passed over, columns that only this scan gives come
// last.
void arrangeColumns(Workbench& bench, const KeptColumns& kept);

}  // namespace kelvane
