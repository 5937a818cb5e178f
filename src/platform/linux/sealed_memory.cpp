#include "platform/linux/sealed_memory.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/mman.h>
#include <vector>

#include "platform/linux/os_error.h"
#include "platform/linux/whole_writes.h"

namespace kelvane::linux_os {
namespace {

Result<FileHandle> openMemory()
{
    FileHandle file(::memfd_create("kelvane-document", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.valid())
        return osError(errno);
    return file;
}

Result<FileHandle> sealed(FileHandle file)
{
    if (::fcntl(file.get(), F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL) != 0 ||
        ::lseek(file.get(), 0, SEEK_SET) != 0)
        return osError(errno);
    return file;
}

}  // namespace

Result<FileHandle> sealedMemory(std::span<const std::byte> bytes)
{
    auto file = openMemory();
    if (!file)
        return file;
    if (const Status status = writeAll(file->get(), bytes); !status)
        return status.error();
    return sealed(std::move(*file));
}

Result<FileHandle> sealedMemory(const NextPiece& next)
{
    auto file = openMemory();
    if (!file)
        return file;
    std::vector<std::byte> buffer(std::size_t{256} * 1024);
    for (;;) {
        const auto count = next(buffer);
        if (!count)
            return count.error();
        if (*count == 0)
            return sealed(std::move(*file));
        if (const Status status = writeAll(file->get(), std::span(buffer).first(*count)); !status)
            return status.error();
    }
}

}  // namespace kelvane::linux_os
