// Single values of the system's registry, for facts about the computer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <windows.h>

namespace kelvane::windows_os {

// Nothing when the value is missing or of another kind. A null name is the key's own value.
[[nodiscard]] std::optional<std::uint32_t> registryNumber(HKEY root, const wchar_t* key, const wchar_t* name);
[[nodiscard]] std::optional<std::wstring> registryText(HKEY root, const wchar_t* key, const wchar_t* name);

}  // namespace kelvane::windows_os
