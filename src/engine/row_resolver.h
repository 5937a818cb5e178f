// The rows of a results file, looked up on the disk.
#pragma once

#include <vector>

#include "base/cancel.h"
#include "base/result.h"
#include "base/work_count.h"
#include "engine/item_block.h"
#include "platform/shell_namespace.h"

namespace kelvane {

struct ResolvedRow {
    Ref<const ShellItem> file;  // null when the file is not there, or is no longer a thing of that kind
    bool approximate = false;
};

// One a row, in their order. The items carry the facts of the block, and share the folders above them. Files are looked
// at, never opened; every archive is listed once. Fails only with `cancelled`. Rows are counted as they are looked up.
[[nodiscard]] Result<std::vector<ResolvedRow>> resolveRows(const ItemBlock& items, ShellNamespace& shell,
                                                           const CancelFlag& cancel, WorkCount* count = nullptr);

}  // namespace kelvane
