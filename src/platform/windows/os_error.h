// The one place where a code of GetLastError turns into an Error.
#pragma once

#include "base/result.h"

namespace kelvane::windows_os {

// code is not ERROR_SUCCESS; the detail is the system's own text in UTF-8.
[[nodiscard]] Error osError(unsigned long code);
// The calling thread's last one.
[[nodiscard]] Error lastError();

}  // namespace kelvane::windows_os
