// Reaching a place without ever following a link on the way.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// The names of a path; nothing for an empty one, and for one with empty names, "." or "..", or a zero byte. What leads
// anywhere else than it says is refused, not cleaned.
[[nodiscard]] std::optional<std::vector<std::string>> namesOf(std::string_view relative);
// The same for "/a/b".
[[nodiscard]] std::optional<std::vector<std::string>> namesOfAbsolute(std::string_view path);

// The root folder of the system, to begin with.
[[nodiscard]] FileHandle openSystemRoot();

// Steps down from the folder, one name after the other, each of which must be a folder itself and no link. Invalid,
// with errno, when one is not.
[[nodiscard]] FileHandle stepDown(const FileHandle& from, const std::vector<std::string>& names);

// Whether we may list the folder behind the handle.
[[nodiscard]] bool mayList(const FileHandle& folder);

// Whether `names` leads from the folder to a file or folder, itself no link.
[[nodiscard]] bool leadsToFileOrFolder(const FileHandle& from, std::vector<std::string> names);

}  // namespace kelvane::linux_os
