// The one place where errno turns into an Error.
#pragma once

#include "base/result.h"

namespace kelvane::linux_os {

// code is an errno value, not 0.
[[nodiscard]] Error osError(int code);

}  // namespace kelvane::linux_os
