// A file of which any part can be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/result.h"

namespace kelvane {

// Used by one thread at a time.
class RandomAccessFile {
public:
    virtual ~RandomAccessFile() = default;
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    // Fills the buffer from this position; fewer bytes than asked for mean that the end was reached, 0 at or past it.
    [[nodiscard]] virtual Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) = 0;
};

}  // namespace kelvane
