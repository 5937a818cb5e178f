#include "platform/linux/dump_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

bool writeAll(int file, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = uninterrupted([&] { return ::write(file, bytes.data(), bytes.size()); });
        if (count < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

Status writeDumpFile(const std::string& path, std::span<const std::byte> bytes)
{
    // The temporary folder is everybody's: a name that cannot be foreseen, of a file that was not there before.
    std::string temporary = path + ".XXXXXX";
    const FileHandle file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.valid())
        return osError(errno);
    if (writeAll(file.get(), bytes) && std::rename(temporary.c_str(), path.c_str()) == 0)
        return {};
    const int code = errno;
    ::unlink(temporary.c_str());
    return osError(code);
}

}  // namespace kelvane::linux_os
