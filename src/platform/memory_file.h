// Bytes as a file.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/random_access_file.h"

namespace kelvane {

class MemoryFile final : public RandomAccessFile {
public:
    explicit MemoryFile(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}
    [[nodiscard]] std::uint64_t size() const override { return bytes_.size(); }
    [[nodiscard]] Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        if (position >= bytes_.size())
            return std::size_t{0};
        const auto rest = std::span(bytes_).subspan(static_cast<std::size_t>(position));
        const std::size_t count = std::min(rest.size(), buffer.size());
        std::copy_n(rest.begin(), count, buffer.begin());
        return count;
    }

private:
    std::vector<std::byte> bytes_;
};

}  // namespace kelvane
