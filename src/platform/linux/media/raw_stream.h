// A file as LibRaw reads it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <libraw/libraw.h>

#include "platform/random_access_file.h"

namespace kelvane::linux_os {

// The file outlives it.
class RawStream final : public LibRaw_abstract_datastream {
public:
    explicit RawStream(RandomAccessFile& file) : file_(file) {}

    int valid() override { return 1; }
    int read(void* buffer, std::size_t size, std::size_t count) override;
    int seek(INT64 offset, int whence) override;
    INT64 tell() override { return position_; }
    INT64 size() override { return static_cast<INT64>(file_.size()); }
    int get_char() override;
    char* gets(char* buffer, int size) override;
    int scanf_one(const char* format, void* value) override;
    int eof() override { return position_ >= size() ? 1 : 0; }
    void* make_jas_stream() override { return nullptr; }

private:
    [[nodiscard]] std::size_t buffered();

    RandomAccessFile& file_;
    INT64 position_ = 0;
    std::array<std::byte, 65'536> buffer_;
    INT64 bufferStart_ = 0;
    std::size_t bufferLength_ = 0;
};

}  // namespace kelvane::linux_os
