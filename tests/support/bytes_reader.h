// A content reader over bytes in memory.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/file_system.h"

namespace kelvane::testing {

class BytesReader : public ContentReader {
public:
    explicit BytesReader(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}

    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        const std::size_t count = std::min(buffer.size(), bytes_.size() - at_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), count, buffer.begin());
        at_ += count;
        return count;
    }
    Status skip(std::uint64_t) override { return Error{}; }
    Result<FileInfo> info() const override { return Error{}; }

private:
    std::vector<std::byte> bytes_;
    std::size_t at_ = 0;
};

}  // namespace kelvane::testing
