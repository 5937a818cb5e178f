// The bytes of a minidump while it is put together: little-endian numbers, one after the other, and places to fill in
// later.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kelvane::linux_os {

// Where something lies in the file (MINIDUMP_LOCATION_DESCRIPTOR).
struct DumpLocation {
    std::uint32_t size = 0;
    std::uint32_t position = 0;
};

class MinidumpBuffer {
public:
    void put16(std::uint16_t value) { put(value, 2); }
    void put32(std::uint32_t value) { put(value, 4); }
    void put64(std::uint64_t value) { put(value, 8); }
    void putLocation(DumpLocation location);
    void putZeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }
    DumpLocation putBytes(std::span<const std::byte> bytes);
    DumpLocation putText(std::string_view text);  // as it is

    // A text in UTF-16 with its length in front and a NUL behind (MINIDUMP_STRING); malformed UTF-8 becomes U+FFFD.
    // Gives its position.
    std::uint32_t putString(std::string_view text);

    // Zeros up to a multiple of four, where the next structure may begin.
    void align();

    void set32(std::uint32_t position, std::uint32_t value);

    [[nodiscard]] std::uint32_t position() const { return static_cast<std::uint32_t>(bytes_.size()); }
    [[nodiscard]] DumpLocation since(std::uint32_t start) const { return {position() - start, start}; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

private:
    void put(std::uint64_t value, int count);

    std::vector<std::byte> bytes_;
};

}  // namespace kelvane::linux_os
