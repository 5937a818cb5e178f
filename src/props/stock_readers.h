// The program's own properties that are read from the file system.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/shell_namespace.h"
#include "props/property_catalogue.h"

namespace kelvane {

// The categories by which Stock.Kind names a file: a name and comma-separated masks.
using KindMasks = std::vector<std::pair<std::u16string, std::string>>;

// Nothing when the row is not read here: the others are numbers of the file's record, combined lists, or made by other
// readers. An empty value when the file has none or it cannot be read. Thread-safe as far as the shell is.
[[nodiscard]] std::optional<RawValue> readStock(ShellNamespace& shell, const KindMasks& kinds, const ShellItem& item,
                                                StockProperty row);

}  // namespace kelvane
