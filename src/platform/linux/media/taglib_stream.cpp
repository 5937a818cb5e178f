#include "platform/linux/media/taglib_stream.h"

#include <algorithm>
#include <limits>

namespace kelvane::linux_os {
namespace {

// A tag is read whole, with its pictures, and copied several times on the way.
constexpr unsigned long longestBlock = 64ul * 1'048'576;

}  // namespace

TagLib::ByteVector TaglibStream::readBlock(unsigned long length)
{
    const auto rest = static_cast<unsigned long>(std::max(this->length() - position_, 0l));
    const unsigned long wanted = std::min({length, rest, left_, longestBlock});
    if (wanted == 0)
        return {};
    TagLib::ByteVector block(static_cast<unsigned int>(wanted), 0);
    const auto count = file_.readAt(static_cast<std::uint64_t>(position_),
                                    std::as_writable_bytes(std::span(block.data(), block.size())));
    const std::size_t read = count ? *count : 0;
    block.resize(static_cast<unsigned int>(read));
    position_ += static_cast<long>(read);
    left_ -= static_cast<unsigned long>(read);
    return block;
}

// What a damaged file points to may lie anywhere; nothing is before the beginning, and nothing is read behind the end.
void TaglibStream::seek(long offset, Position from)
{
    const long start = from == Beginning ? 0 : from == Current ? position_ : length();
    long target = 0;
    if (__builtin_add_overflow(start, offset, &target))
        target = std::numeric_limits<long>::max();
    position_ = std::max(target, 0l);
}

long TaglibStream::length()
{
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<long>::max());
    return static_cast<long>(std::min(file_.size(), most));
}

}  // namespace kelvane::linux_os
