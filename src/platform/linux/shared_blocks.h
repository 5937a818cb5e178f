// Blocks of the disk that several files share.
#pragma once

#include <cstdint>

#include "base/result.h"

namespace kelvane::linux_os {

// 0 where the file system does not tell.
[[nodiscard]] Result<std::uint64_t> sharedBytes(int file);

// As HeldFile::shareBlocks() says: `target` comes to share the blocks of `source`.
[[nodiscard]] Status shareBlocks(int source, int target);

}  // namespace kelvane::linux_os
