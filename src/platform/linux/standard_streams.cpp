#include "platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace kelvane {

void reserveStandardStreams() noexcept
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        const bool closed = fcntl(stream, F_GETFD) == -1 && errno == EBADF;
        // The lowest free number is taken, which is this one. Opened the wrong way round, so that using it fails.
        if (closed && open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) != stream)
            return;
    }
}

}  // namespace kelvane
