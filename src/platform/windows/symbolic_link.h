// Symbolic links: making them and reading where they lead.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "base/result.h"

namespace kelvane::windows_os {

// As LinkMaker::makeSymbolicLink, for a name in the system's form.
[[nodiscard]] Status createSymbolicLink(const std::wstring& name, const std::filesystem::path& target, bool toFolder);

// The target as it was written; `wrongType` for what is neither a symbolic link nor a junction.
[[nodiscard]] Result<std::filesystem::path> readSymbolicLink(const std::wstring& name);

// The same from a reparse point's own bytes, as the system gives them (REPARSE_DATA_BUFFER of the published headers).
[[nodiscard]] std::optional<std::filesystem::path> linkTarget(std::span<const std::byte> reparseData);

}  // namespace kelvane::windows_os
