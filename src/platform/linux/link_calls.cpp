#include "platform/linux/link_calls.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

#ifndef EXFAT_SUPER_MAGIC
constexpr unsigned long EXFAT_SUPER_MAGIC = 0x2011BAB0;
#endif

// These refuse a link with EPERM, which elsewhere means that this person may not make this one.
bool knowsNoLinks(int folder)
{
    struct statfs facts {};
    if (::fstatfs(folder, &facts) != 0)
        return false;
    const auto type = static_cast<unsigned long>(facts.f_type);
    return type == MSDOS_SUPER_MAGIC || type == EXFAT_SUPER_MAGIC;
}

Error linkError(int code, int folder)
{
    Error error = osError(code);
    if (code == EPERM && knowsNoLinks(folder))
        error.kind = ErrorKind::notSupported;
    return error;
}

}  // namespace

// The kernel takes the descriptor itself only from an administrator; its name among the process's files does for all.
Status linkOpenFile(int file, int folder, const std::string& name)
{
    const std::string named = "/proc/self/fd/" + std::to_string(file);
    if (::linkat(AT_FDCWD, named.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0)
        return {};
    const int code = errno;
    if (code == ENOENT && ::linkat(file, "", folder, name.c_str(), AT_EMPTY_PATH) == 0)
        return {};
    return linkError(code, folder);
}

Status makeSymbolicLink(const std::filesystem::path& target, int folder, const std::string& name)
{
    return ::symlinkat(target.c_str(), folder, name.c_str()) == 0 ? Status() : Status(linkError(errno, folder));
}

}  // namespace kelvane::linux_os
