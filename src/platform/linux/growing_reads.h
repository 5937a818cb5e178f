// Values whose size has to be asked for first.
#pragma once

#include <cerrno>
#include <cstddef>
#include <sys/types.h>

#include "base/result.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {

// Calls get(buffer, size), which answers with the size needed or filled, until the buffer fits; the value may grow
// between asking for its size and reading it.
template <class Buffer, class Get>
[[nodiscard]] Result<Buffer> readGrowing(std::size_t limit, Get get)
{
    for (;;) {
        const ssize_t needed = get(nullptr, 0);
        if (needed < 0)
            return osError(errno);
        if (static_cast<std::size_t>(needed) > limit)
            return Error{ErrorKind::io, 0, "the stream is too long"};
        Buffer buffer(static_cast<std::size_t>(needed), {});
        if (needed == 0)
            return buffer;
        const ssize_t filled = get(buffer.data(), buffer.size());
        if (filled >= 0) {
            buffer.resize(static_cast<std::size_t>(filled));
            return buffer;
        }
        if (errno != ERANGE)
            return osError(errno);
    }
}

}  // namespace kelvane::linux_os
