// Renaming and removing files, by handle where the system can. Names are in the system's form.
#pragma once

#include <string>
#include <windows.h>

#include "base/result.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {

// As HeldFolder::rename.
[[nodiscard]] Status renameFile(const std::wstring& from, const std::wstring& to);

// As HeldFolder::replace, and those who have `to` open keep their file; `notSupported` on systems and file systems that
// know no such rename.
[[nodiscard]] Status replaceOpenFile(const std::wstring& from, const std::wstring& to);
// The same where nobody has `to` open; accessDenied otherwise.
[[nodiscard]] Status replaceClosedFile(const std::wstring& from, const std::wstring& to);

// Opens what has this name itself, so that it can be looked at and then removed by removeOpen().
[[nodiscard]] Handle openToRemove(const std::wstring& name);

// Takes the name away that the handle was opened by, also of a read-only file; a folder only when it is empty. On file
// systems that know no other removal the name goes when the last handle does.
[[nodiscard]] Status removeOpen(HANDLE file);

}  // namespace kelvane::windows_os
