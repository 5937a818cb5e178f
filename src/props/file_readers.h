// The System.* properties that the file system itself knows, whatever is in the file.
#pragma once

#include <optional>

#include "platform/shell_namespace.h"
#include "props/property_catalogue.h"

namespace kelvane {

// Nothing when the property is not one of these (other readers are asked then); an empty value when this file has none.
// Thread-safe as far as the shell is.
[[nodiscard]] std::optional<RawValue> readFileProperty(ShellNamespace& shell, const ShellItem& item,
                                                       const PropRef& property);

// Bytes taken on the disk; empty for an entry of an archive, which takes none of its own.
[[nodiscard]] RawValue readAllocatedSize(ShellNamespace& shell, const ShellItem& item);

}  // namespace kelvane
