// What a person ordered: a definition, and the options beside it that no definition holds.
#pragma once

#include "engine/scan_node.h"

namespace kelvane {

struct ScanOrder {
    CScanNode definition;
    bool archives = false;    // entered as folders
    bool exhaustive = false;  // similar contents: every pair is compared
};

}  // namespace kelvane
