#include "platform/linux/descriptor_file.h"

#include <cerrno>
#include <limits>
#include <sys/stat.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {

Result<std::unique_ptr<DescriptorFile>> DescriptorFile::make(FileHandle file)
{
    struct stat facts {};
    if (::fstat(file.get(), &facts) != 0)
        return osError(errno);
    if (!S_ISREG(facts.st_mode))
        return Error{ErrorKind::wrongType, 0, "not a regular file"};
    return std::unique_ptr<DescriptorFile>(
        new DescriptorFile(std::move(file), static_cast<std::uint64_t>(facts.st_size)));
}

Result<std::size_t> DescriptorFile::readAt(std::uint64_t position, std::span<std::byte> buffer)
{
    constexpr std::uint64_t furthest = std::numeric_limits<off_t>::max();
    std::size_t filled = 0;
    while (filled < buffer.size() && position < furthest - filled) {
        const auto from = static_cast<off_t>(position + filled);
        const auto rest = buffer.subspan(filled);
        const ssize_t got = uninterrupted([&] { return ::pread(file_.get(), rest.data(), rest.size(), from); });
        if (got < 0)
            return osError(errno);
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

}  // namespace kelvane::linux_os
