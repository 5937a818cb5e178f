// Bytes as a file that has no name and that nobody can change any more.
#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// Positioned at its beginning; closed when a program is started.
[[nodiscard]] Result<FileHandle> sealedMemory(std::span<const std::byte> bytes);

// The same, of pieces: next() fills a buffer and says how much of it there is, 0 at the end.
using NextPiece = std::function<Result<std::size_t>(std::span<std::byte>)>;
[[nodiscard]] Result<FileHandle> sealedMemory(const NextPiece& next);

}  // namespace kelvane::linux_os
