// The bytes of a file, from its beginning.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/result.h"
#include "platform/random_access_file.h"
#include "text/document_format.h"

namespace kelvane {

// At most `limit` bytes from the beginning (0: all of them), however large the file says that it is.
[[nodiscard]] Result<std::vector<std::byte>> readBeginning(RandomAccessFile& file, std::uint64_t limit);

// The outcome of a document whose file could not be read.
[[nodiscard]] ReadOutcome unreadable(const Error& error);

}  // namespace kelvane
