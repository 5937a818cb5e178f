// What names tell: which files are archives, and which entries of an archive may be shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvane::linux_os {

// Whether a file is worth looking into: archives that people pack their files into. Programs and documents that merely
// happen to be archives (.jar, .apk, .docx, .epub, .cbz, ...) are files in their own right and are not looked into.
[[nodiscard]] bool isArchiveName(std::string_view fileName);

// The path of an entry in the form that the port promises, or nothing for an entry that is left out: one that climbs
// out of the archive, is absolute, lies too deep, or is the archive's own top.
[[nodiscard]] std::optional<std::string> safeEntryPath(std::string_view stored);

}  // namespace kelvane::linux_os
