// The one place where a code of GetLastError, or an HRESULT, turns into an Error.
#pragma once

#include "base/result.h"

namespace kelvane::windows_os {

// code is not ERROR_SUCCESS; the detail is the system's own text in UTF-8.
[[nodiscard]] Error osError(unsigned long code);
// The calling thread's last one.
[[nodiscard]] Error lastError();
// Of the shell and of COM; result is a failure, and travels along as the code when it wraps none of the system's.
[[nodiscard]] Error resultError(long result);
// The HRESULT that wraps an error's code.
[[nodiscard]] long resultOf(const Error& error);

}  // namespace kelvane::windows_os
