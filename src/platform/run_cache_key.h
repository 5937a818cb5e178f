// Under which key a value made of a file is kept from run to run, and how what is told of a file that none can be made
// of is kept.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/run_cache.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Asks the system how the file is now. `settings` says everything else that the value depends on. The extension counts
// too: formats are known by it, and on some systems a file is renamed without a trace. Nothing for entries of archives
// and other files without an identity of their own.
[[nodiscard]] std::optional<RunCacheKey> runCacheKey(ShellNamespace& shell, const ShellItem& item, CachedKind kind,
                                                     std::string_view settings);

// What a reader says of a file beyond the outcome. A long one is not kept: without it, the outcome still holds.
[[nodiscard]] std::vector<std::byte> detailToKeep(std::string_view detail);
[[nodiscard]] std::string keptDetail(std::span<const std::byte> bytes);

}  // namespace kelvane
