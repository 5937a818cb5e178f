// A file that is there as an open descriptor.
#pragma once

#include <memory>

#include "base/result.h"
#include "platform/linux/file_handle.h"
#include "platform/random_access_file.h"

namespace kelvane::linux_os {

// Reads without moving the descriptor's own position, so that a program may be given the same descriptor in between.
class DescriptorFile final : public RandomAccessFile {
public:
    // Its size is that of this moment.
    [[nodiscard]] static Result<std::unique_ptr<DescriptorFile>> make(FileHandle file);

    [[nodiscard]] std::uint64_t size() const override { return size_; }
    [[nodiscard]] Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override;
    [[nodiscard]] int descriptor() const { return file_.get(); }

private:
    DescriptorFile(FileHandle file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

    FileHandle file_;
    std::uint64_t size_;
};

}  // namespace kelvane::linux_os
