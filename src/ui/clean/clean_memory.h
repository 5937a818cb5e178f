// What the clean-ups of one window remember.
#pragma once

#include <memory>

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// Made with the window, used on its own thread alone.
using CleanMemory = std::shared_ptr<CleanupMemory>;

}  // namespace kelvane
