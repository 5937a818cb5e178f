// What the window's thread tells of the file that is previewed.
#pragma once

#include <optional>
#include <string>

#include "engine/criteria.h"
#include "platform/shell_item.h"
#include "results/result_item.h"

namespace kelvane {

class Workbench;

struct PreviewedFile {
    Ref<const ShellItem> file;            // null: it is no longer on the list
    Ref<const ShellItem> first;           // of its group, but for itself; null when it is alone
    Ref<const ShellItem> before;          // found just before it in its group; null when it is the first
    std::string columns;                  // of the list
    std::optional<CScanNode> definition;  // what was searched for, where that is known
    EngineOptions options;                // that the search went by
    bool approximate = false;             // its group was compared approximately
    bool joinedByHand = false;            // its group was
};

// On the window's thread.
[[nodiscard]] PreviewedFile previewedFile(Workbench& bench, ItemId item);

}  // namespace kelvane
