// Which bytes of two files are compared: all of them, or of huge files a head and samples.
#pragma once

#include <vector>

#include "base/file_size.h"

namespace kelvane {

struct ByteRange {
    FileOffset begin;
    FileSize length;
};

struct ComparedRanges {
    std::vector<ByteRange> ranges;  // ascending, not overlapping; the first one is the head
    bool sampled = false;           // some bytes are not compared
    [[nodiscard]] std::uint64_t totalBytes() const;
};

// The limit above which files are sampled; halved when a file is not one of the file system.
[[nodiscard]] FileSize hugeLimit(FileSize setting, bool bothInFileSystem) noexcept;

// Whether a file of this size is compared over samples: it is larger than 1.1 x limit.
[[nodiscard]] bool isSampled(FileSize size, FileSize limit) noexcept;

// Up to 1.1 x limit everything; beyond, the first `limit` bytes and then limit/10/64 KiB samples of 64 KiB, each the
// end of one of equally long stretches of the rest, so that the last one ends at the end of the file.
[[nodiscard]] ComparedRanges comparedRanges(FileSize size, FileSize limit);

}  // namespace kelvane
