#include "platform/linux/media/raw_stream.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string>

namespace kelvane::linux_os {

// How many bytes of the buffer lie from the position on; it is filled where there are none. 0 at the end.
std::size_t RawStream::buffered()
{
    const INT64 end = bufferStart_ + static_cast<INT64>(bufferLength_);
    if (position_ >= bufferStart_ && position_ < end)
        return static_cast<std::size_t>(end - position_);
    const auto count = file_.readAt(static_cast<std::uint64_t>(position_), buffer_);
    bufferStart_ = position_;
    bufferLength_ = count ? *count : 0;
    return bufferLength_;
}

int RawStream::read(void* buffer, std::size_t size, std::size_t count)
{
    if (size == 0 || count > SIZE_MAX / size)
        return 0;
    auto* out = static_cast<std::byte*>(buffer);
    std::size_t left = size * count;
    while (left > 0) {
        const std::size_t part = std::min(buffered(), left);
        if (part == 0)
            break;
        out = std::copy_n(&buffer_[static_cast<std::size_t>(position_ - bufferStart_)], part, out);
        position_ += static_cast<INT64>(part);
        left -= part;
    }
    return static_cast<int>((size * count - left) / size);
}

int RawStream::seek(INT64 offset, int whence)
{
    const INT64 start = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : size();
    if (offset < -start || offset > INT64_MAX - start)
        return -1;
    position_ = start + offset;
    return 0;
}

int RawStream::get_char()
{
    unsigned char byte = 0;
    return read(&byte, 1, 1) == 1 ? byte : EOF;
}

char* RawStream::gets(char* buffer, int size)
{
    int length = 0;
    while (length + 1 < size) {
        const int next = get_char();
        if (next == EOF)
            break;
        buffer[length++] = static_cast<char>(next);
        if (next == '\n')
            break;
    }
    if (length == 0)
        return nullptr;
    buffer[length] = 0;
    return buffer;
}

// LibRaw asks for one number at a time.
int RawStream::scanf_one(const char* format, void* value)
{
    constexpr std::size_t longestWord = 24;
    std::string word;
    int next = get_char();
    while (next != EOF && std::isspace(next) != 0)
        next = get_char();
    for (; next != EOF && std::isspace(next) == 0 && word.size() < longestWord; next = get_char())
        word += static_cast<char>(next);
    const std::string_view wanted = format;
    if (wanted == "%d")
        return std::sscanf(word.c_str(), "%d", static_cast<int*>(value));
    if (wanted == "%f")
        return std::sscanf(word.c_str(), "%f", static_cast<float*>(value));
    return 0;
}

}  // namespace kelvane::linux_os
