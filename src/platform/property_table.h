// The program's own table of the well-known properties, which serves every system.
#pragma once

#include <memory>

#include "platform/property_system.h"

namespace kelvane {

// Never null; constant and thread-safe.
[[nodiscard]] std::unique_ptr<PropertySystem> makePropertyTable();

}  // namespace kelvane
