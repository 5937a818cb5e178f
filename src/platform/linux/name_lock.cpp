#include "platform/linux/name_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

// A lock of an open file, unlike one of a process, also holds against the same process, and ends with the last process
// that has the file open, however that ends.
bool lockCall(const FileHandle& file, int command, struct flock& lock)
{
    return uninterrupted([&] { return ::fcntl(file.get(), command, &lock); }) == 0;
}

struct flock wholeFile(short type)
{
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return lock;
}

Result<FileHandle> openLockFile(const std::filesystem::path& file, int creating)
{
    FileHandle opened(
        uninterrupted([&] { return ::open(file.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | creating, 0600); }));
    if (!opened.valid())
        return errno == ELOOP ? heldByOthers() : osError(errno);
    struct stat facts {};
    if (::fstat(opened.get(), &facts) != 0)
        return osError(errno);
    if (!S_ISREG(facts.st_mode) || facts.st_uid != ::geteuid())
        return heldByOthers();
    return opened;
}

}  // namespace

Result<NameLock> NameLock::take(const std::filesystem::path& file)
{
    auto opened = openLockFile(file, O_CREAT);
    if (!opened)
        return opened.error();
    struct flock lock = wholeFile(F_WRLCK);
    if (lockCall(*opened, F_OFD_SETLK, lock))
        return NameLock(std::move(*opened));
    if (errno == EAGAIN || errno == EACCES)
        return Error{ErrorKind::changed, errno, "another process holds the name"};
    return osError(errno);
}

NameLock::~NameLock()
{
    // Said openly, since a forked child that has not started its program yet would keep the lock.
    struct flock lock = wholeFile(F_UNLCK);
    if (file_.valid())
        lockCall(file_, F_OFD_SETLK, lock);
}

bool isLocked(const std::filesystem::path& file)
{
    const auto opened = openLockFile(file, 0);
    struct flock lock = wholeFile(F_WRLCK);
    return opened && lockCall(*opened, F_OFD_GETLK, lock) && lock.l_type != F_UNLCK;
}

Error heldByOthers()
{
    return {ErrorKind::accessDenied, 0, "somebody else holds the name"};
}

}  // namespace kelvane::linux_os
