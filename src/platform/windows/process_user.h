// Who runs a process.
#pragma once

#include <windows.h>

namespace kelvane::windows_os {

// Whether the process is run by the user who runs this one. False also when the system does not tell.
[[nodiscard]] bool runsAsSameUser(DWORD process);

// Whether this process has the rights of an administrator: it may open the machine's software settings for writing.
// Asked once.
[[nodiscard]] bool hasAdministratorsRights();

}  // namespace kelvane::windows_os
