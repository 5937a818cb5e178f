// A random-access file over bytes in memory.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "platform/random_access_file.h"

namespace kelvane::testing {

class BytesFile : public RandomAccessFile {
public:
    explicit BytesFile(std::string bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t size() const override { return bytes_.size(); }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        const auto all = std::as_bytes(std::span(bytes_));
        const auto rest = all.subspan(static_cast<std::size_t>(std::min<std::uint64_t>(position, all.size())));
        const std::size_t count = std::min(rest.size(), buffer.size());
        std::copy_n(rest.begin(), count, buffer.begin());
        return count;
    }

private:
    std::string bytes_;
};

}  // namespace kelvane::testing
