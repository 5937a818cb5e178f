// Under which key a value made of a file is kept from run to run.
#pragma once

#include <optional>
#include <string_view>

#include "platform/run_cache.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Asks the system how the file is now. `settings` says everything else that the value depends on. The extension counts
// too: formats are known by it, and on some systems a file is renamed without a trace. Nothing for entries of archives
// and other files without an identity of their own.
[[nodiscard]] std::optional<RunCacheKey> runCacheKey(ShellNamespace& shell, const ShellItem& item, CachedKind kind,
                                                     std::string_view settings);

}  // namespace kelvane
