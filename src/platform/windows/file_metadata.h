// What a file has besides its contents and name.
#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

#include "base/file_time.h"
#include "base/result.h"
#include "platform/held_files.h"

namespace kelvane::windows_os {

// The time at which the file was made, as one of its attributes: 100-nanosecond intervals since 1601, eight bytes,
// lowest first. Alternate data streams and access lists are not among the attributes.
inline constexpr std::string_view createdAttribute = "kelvane.created";

[[nodiscard]] Result<FileMetadata> metadataOf(HANDLE file);

// As NewFile::setMetadata; the handle may write attributes. How a file is stored (compressed, sparse) is its folder's
// affair and no failure; a file that was encrypted and now is not, is one.
[[nodiscard]] Status giveMetadata(HANDLE file, const FileMetadata& metadata);

// Nanoseconds since 1970 there and back; what they cannot express becomes the nearest that they can.
[[nodiscard]] std::int64_t unixNanoseconds(FileTime time) noexcept;
[[nodiscard]] FileTime fromUnixNanoseconds(std::int64_t nanoseconds) noexcept;

}  // namespace kelvane::windows_os
