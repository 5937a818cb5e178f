#include "platform/linux/dump_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"
#include "platform/linux/whole_writes.h"

namespace kelvane::linux_os {
Status writeDumpFile(const std::string& path, std::span<const std::byte> bytes)
{
    // The temporary folder is everybody's: a name that cannot be foreseen, of a file that was not there before.
    std::string temporary = path + ".XXXXXX";
    const FileHandle file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.valid())
        return osError(errno);
    Status done = writeAll(file.get(), bytes);
    if (done && std::rename(temporary.c_str(), path.c_str()) != 0)
        done = osError(errno);
    if (!done)
        ::unlink(temporary.c_str());
    return done;
}

}  // namespace kelvane::linux_os
