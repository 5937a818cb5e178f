#include "cli/output_stream.h"

#include <cerrno>

namespace kelvane {
namespace {

constexpr std::size_t bufferSize = 64 * 1024;

}  // namespace

OutputBuffer::OutputBuffer(std::FILE* file) : file_(file), buffer_(bufferSize)
{
    std::setvbuf(file_, nullptr, _IONBF, 0);
    setp(buffer_.data(), buffer_.data() + buffer_.size());
}

OutputBuffer::~OutputBuffer()
{
    drain();
}

bool OutputBuffer::drain()
{
    const auto count = static_cast<std::size_t>(pptr() - pbase());
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    if (failure_)
        return false;
    errno = 0;
    if (std::fwrite(buffer_.data(), 1, count, file_) == count)
        return true;
    failure_ = errno != 0 ? std::error_code(errno, std::generic_category()) : make_error_code(std::errc::io_error);
    return false;
}

OutputBuffer::int_type OutputBuffer::overflow(int_type character)
{
    if (!drain())
        return traits_type::eof();
    if (!traits_type::eq_int_type(character, traits_type::eof()))
        sputc(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
}

int OutputBuffer::sync()
{
    return drain() ? 0 : -1;
}

}  // namespace kelvane
