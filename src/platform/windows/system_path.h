// Paths in the form that the system takes as they are, whatever their length.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kelvane::windows_os {

// The extended-length form of an absolute path. Always, not for long paths only: the plain form would lose dots and
// spaces at the end of a name, and "aux.txt" would be a device, so that another file than the listed one was opened.
// The system takes that form to the letter, so "/", "." and ".." are settled here. What is in such a form already, and
// what is not absolute, stays as it is.
[[nodiscard]] std::wstring systemPath(const std::filesystem::path& path);

// The plain form of what the system gives in the other one.
[[nodiscard]] std::filesystem::path plainPath(std::wstring_view systemPath);

// Where an open handle is now, in the extended-length form; by the volume's own name when it has no letter.
[[nodiscard]] std::optional<std::wstring> pathOfHandle(void* handle);

// The plain path of what is there, all links on the way followed; nothing when nothing is.
[[nodiscard]] std::optional<std::filesystem::path> finalPath(const std::filesystem::path& path);

}  // namespace kelvane::windows_os
