// What a scan held its files against, as far as marks and clean-ups care.
#pragma once

#include <string_view>

#include "engine/scan_node.h"

namespace kelvane {

// The definition's own list of properties names this one.
[[nodiscard]] bool listsProperty(const CScanNode& definition, std::string_view canonicalName);

// The files of a group have the same size: it is listed, or their contents are equal.
[[nodiscard]] bool groupsHaveOneSize(const CScanNode& definition);

}  // namespace kelvane
