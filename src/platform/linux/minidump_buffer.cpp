#include "platform/linux/minidump_buffer.h"

#include "base/utf.h"

namespace kelvane::linux_os {

void MinidumpBuffer::put(std::uint64_t value, int count)
{
    for (int i = 0; i < count; ++i, value >>= 8)
        bytes_.push_back(static_cast<std::byte>(value & 0xFF));
}

void MinidumpBuffer::putLocation(DumpLocation location)
{
    put32(location.size);
    put32(location.position);
}

DumpLocation MinidumpBuffer::putBytes(std::span<const std::byte> bytes)
{
    const std::uint32_t start = position();
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return since(start);
}

DumpLocation MinidumpBuffer::putText(std::string_view text)
{
    return putBytes(std::as_bytes(std::span(text)));
}

std::uint32_t MinidumpBuffer::putString(std::string_view text)
{
    align();
    const std::uint32_t start = position();
    const std::u16string units = toUtf16(text);
    put32(static_cast<std::uint32_t>(units.size() * 2));
    for (const char16_t unit : units)
        put16(unit);
    put16(0);
    return start;
}

void MinidumpBuffer::align()
{
    putZeros((4 - bytes_.size() % 4) % 4);
}

void MinidumpBuffer::set32(std::uint32_t position, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i, value >>= 8)
        bytes_.at(position + i) = static_cast<std::byte>(value & 0xFF);
}

}  // namespace kelvane::linux_os
