// Starting this test program once more, for tests that need another process.
#pragma once

#include <string>
#include <windows.h>

namespace kelvane::testing {

// Runs the tests of that filter with the variable in their environment, waits at most a minute and gives the exit code.
// Throws when nothing could be started.
[[nodiscard]] DWORD startSelf(const std::wstring& arguments, const wchar_t* variable, const std::wstring& value);

}  // namespace kelvane::testing
