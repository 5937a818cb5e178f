// The words in which reports describe a scan.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "engine/engine_options.h"
#include "engine/scan_node.h"
#include "platform/path_rules.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// The tags of the report templates ("<%MODE%>", ...) with their texts, in a fixed order.
[[nodiscard]] std::vector<std::pair<std::string, std::u16string>>
scanSummary(const CScanNode& definition, const EngineOptions& options, const PathRules& rules, ShellNamespace& shell);

}  // namespace kelvane
