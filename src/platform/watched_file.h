// A file that remembers whether it could be read.
#pragma once

#include "platform/random_access_file.h"

namespace kelvane {

// Libraries tell a file that cannot be read from one that is damaged in words at best. The file outlives it.
class WatchedFile final : public RandomAccessFile {
public:
    explicit WatchedFile(RandomAccessFile& file) : file_(file) {}

    std::uint64_t size() const override { return file_.size(); }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        auto count = file_.readAt(position, buffer);
        failed_ = failed_ || !count;
        return count;
    }
    [[nodiscard]] bool failed() const { return failed_; }

private:
    RandomAccessFile& file_;
    bool failed_ = false;
};

}  // namespace kelvane
