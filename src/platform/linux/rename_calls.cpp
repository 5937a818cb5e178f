#include "platform/linux/rename_calls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

// EINVAL is how file systems refuse a flag that they do not know; it has other meanings too.
bool mayBeUnknownFlag(int code)
{
    return code == EINVAL || code == ENOSYS || code == ENOTSUP;
}

bool statusAt(const NameIn& at, struct stat& status)
{
    return ::fstatat(at.folder, at.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool areSame(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

Status stillNamed(const NameIn& from, const NameIn& to)
{
    struct stat here {};
    struct stat there {};
    if (!statusAt(from, here) || !statusAt(to, there))
        return osError(errno);
    return areSame(here, there) ? Status() : Status(osError(ESTALE));
}

// Both names lead to the file for a moment. The old one goes only while it still does.
Status linkThenUnlink(const NameIn& from, const NameIn& to)
{
    if (::linkat(from.folder, from.name.c_str(), to.folder, to.name.c_str(), 0) != 0)
        return osError(errno);
    Status done = stillNamed(from, to);
    if (done && ::unlinkat(from.folder, from.name.c_str(), 0) != 0)
        done = osError(errno);
    if (!done)
        ::unlinkat(to.folder, to.name.c_str(), 0);
    return done;
}

bool takeName(const NameIn& at, bool isFolder)
{
    if (isFolder)
        return ::mkdirat(at.folder, at.name.c_str(), 0700) == 0;
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return FileHandle(uninterrupted([&] { return ::openat(at.folder, at.name.c_str(), flags, 0600); })).valid();
}

// An empty file or folder of our own takes the name first, and only that is replaced: a folder that is not empty
// cannot be.
Status takeThenReplace(const NameIn& from, const NameIn& to, bool isFolder)
{
    if (!takeName(to, isFolder))
        return osError(errno);
    if (::renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()) == 0)
        return {};
    const int code = errno;
    ::unlinkat(to.folder, to.name.c_str(), isFolder ? AT_REMOVEDIR : 0);
    return osError(code);
}

bool hasNoHardLinks(const Error& error)
{
    const int code = error.systemCode;
    return code == EPERM || code == EMLINK || mayBeUnknownFlag(code);
}

}  // namespace

Status exchangeNames(int folder, const std::string& a, const std::string& b)
{
    if (::renameat2(folder, a.c_str(), folder, b.c_str(), RENAME_EXCHANGE) == 0)
        return {};
    Error error = osError(errno);
    if (mayBeUnknownFlag(error.systemCode))
        error.kind = ErrorKind::notSupported;
    return error;
}

Status renameToFree(const NameIn& from, const NameIn& to)
{
    if (::renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    return mayBeUnknownFlag(errno) ? renameToFreeBySteps(from, to) : Status(osError(errno));
}

Status renameToFreeBySteps(const NameIn& from, const NameIn& to)
{
    struct stat status {};
    if (!statusAt(from, status))
        return osError(errno);
    if (S_ISDIR(status.st_mode))
        return takeThenReplace(from, to, true);
    const Status linked = linkThenUnlink(from, to);
    return !linked && hasNoHardLinks(linked.error()) ? takeThenReplace(from, to, false) : linked;
}

}  // namespace kelvane::linux_os
