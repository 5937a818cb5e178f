// Byte counts that cannot be mixed up with other numbers.
#pragma once

#include <compare>
#include <cstdint>

namespace kelvane {

// A number of bytes.
struct FileSize {
    std::uint64_t bytes = 0;
    friend auto operator<=>(FileSize, FileSize) = default;
};

// A position in a file, in bytes from its beginning.
struct FileOffset {
    std::uint64_t bytes = 0;
    friend auto operator<=>(FileOffset, FileOffset) = default;
};

}  // namespace kelvane
