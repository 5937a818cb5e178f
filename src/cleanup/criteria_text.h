// What a scan looked for, in plain words.
#pragma once

#include <string>

#include "engine/engine_options.h"
#include "engine/scan_node.h"
#include "platform/path_rules.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// UTF-8 lines that end in CR LF, in the language in force.
[[nodiscard]] std::string criteriaText(const CScanNode& definition, const EngineOptions& options,
                                       const PathRules& rules, ShellNamespace& shell);

}  // namespace kelvane
