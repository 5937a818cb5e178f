// From what the system says of a file to what the port says of it.
#pragma once

#include <optional>
#include <windows.h>

#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane::windows_os {

// Of a file with these attributes and reparse tag (0 without one). What only keeps its contents elsewhere (cloud,
// deduplicated, compressed files) is a file like any other; what stands for another name is a link.
[[nodiscard]] FileKind kindOf(DWORD attributes, DWORD reparseTag) noexcept;

[[nodiscard]] FileTime timeOf(LARGE_INTEGER time) noexcept;
[[nodiscard]] FileTime timeOf(FILETIME time) noexcept;

// What is behind an open handle. A handle that was opened without following links tells of the link itself.
[[nodiscard]] Result<FileInfo> infoOf(HANDLE file);
// Without the owner.
[[nodiscard]] Result<FileDetails> detailsOf(HANDLE file);
[[nodiscard]] FileIdentity identityOf(HANDLE file);

// Whether the name itself, links not followed, is one of the open file's.
[[nodiscard]] bool leadsTo(const std::wstring& systemPath, HANDLE file);

// Whether files of the volume that the handle is open on have identities of 128 bits (ReFS).
[[nodiscard]] bool hasWideIdentities(HANDLE file);
// Identities of 128 bits as 64, by mixing the halves; those of 64 bits as they are.
[[nodiscard]] std::uint64_t foldedIndex(const FILE_ID_128& id) noexcept;

// Opens any file or folder to look at it, which disturbs nobody; an invalid handle leaves the last error set.
[[nodiscard]] HANDLE openToLook(const std::wstring& systemPath, bool followLinks, DWORD access = FILE_READ_ATTRIBUTES);
// As FileSystem::details does with links: the info of what a followed link leads to says that it was one.
[[nodiscard]] Result<FileDetails> lookUp(const std::wstring& systemPath, bool followLinks);

inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

}  // namespace kelvane::windows_os
