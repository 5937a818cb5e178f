// A random-access file over bytes in memory.
#pragma once

#include <algorithm>
#include <span>

#include "platform/random_access_file.h"

namespace kelvane {

class BytesInMemory final : public RandomAccessFile {
public:
    // The bytes outlive it.
    explicit BytesInMemory(std::span<const std::byte> bytes) : bytes_(bytes) {}

    std::uint64_t size() const override { return bytes_.size(); }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        const auto rest = bytes_.subspan(static_cast<std::size_t>(std::min<std::uint64_t>(position, bytes_.size())));
        const std::size_t count = std::min(rest.size(), buffer.size());
        std::copy_n(rest.begin(), count, buffer.begin());
        return count;
    }

private:
    std::span<const std::byte> bytes_;
};

}  // namespace kelvane
