#include "platform/linux/file_lock.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

#include "platform/linux/anchored_path.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds longestNap(20);

int openAt(const AnchoredPath& at, int flags)
{
    constexpr int always = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    // Others may lock too where the folder is theirs as well, for which they must be able to open the file.
    return uninterrupted([&] { return ::openat(at.folder(), at.rest(), flags | always, 0644); });
}

// Network file systems grant an exclusive lock on a writable file only. A file of another person is opened as it is:
// some systems refuse to open it with O_CREAT in a folder that all may write.
FileHandle openLockFile(const AnchoredPath& at)
{
    int file = openAt(at, O_RDWR);
    if (file < 0 && errno == ENOENT)
        file = openAt(at, O_RDWR | O_CREAT);
    if (file < 0 && errno == EACCES)
        file = openAt(at, O_RDONLY);
    return FileHandle(file);
}

// Whether the name still leads to the file that was locked: it may have been removed in between.
bool stillNamed(const AnchoredPath& at, int file)
{
    struct stat held = {};
    struct stat named = {};
    return ::fstat(file, &held) == 0 && ::fstatat(at.folder(), at.rest(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

class HeldLock final : public FileLock {
public:
    HeldLock(std::filesystem::path path, FileHandle file) : path_(std::move(path)), file_(std::move(file)) {}
    // Removed while it is held: nobody else can have it then, and those who wait for it find its name gone.
    ~HeldLock() override
    {
        const Result<AnchoredPath> at = AnchoredPath::make(path_);
        if (at && stillNamed(*at, file_.get()))
            ::unlinkat(at->folder(), at->rest(), 0);
    }

private:
    std::filesystem::path path_;
    FileHandle file_;
};

// A valid handle when the lock is held, an invalid one when somebody else holds it.
Result<FileHandle> tryLock(const AnchoredPath& at)
{
    FileHandle file = openLockFile(at);
    if (!file.valid())
        return errno == ENOENT || errno == EEXIST ? Result<FileHandle>(FileHandle()) : osError(errno);
    if (uninterrupted([&] { return ::flock(file.get(), LOCK_EX | LOCK_NB); }) != 0)
        return errno == EWOULDBLOCK ? Result<FileHandle>(FileHandle()) : osError(errno);
    return stillNamed(at, file.get()) ? std::move(file) : FileHandle();
}

bool folderExists(const std::filesystem::path& path)
{
    std::error_code ignored;
    return std::filesystem::is_directory(path.parent_path(), ignored);
}

}  // namespace

Result<std::unique_ptr<FileLock>> lockBeside(const std::filesystem::path& path, std::uint32_t milliseconds)
{
    std::filesystem::path name = path;
    name += ".kvlock";
    const Result<AnchoredPath> at = AnchoredPath::make(name);
    if (!at)
        return at.error();
    if (!folderExists(name))
        return osError(ENOENT);
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (auto nap = std::chrono::milliseconds(1);; nap = std::min(nap * 2, longestNap)) {
        Result<FileHandle> file = tryLock(*at);
        if (!file)
            return file.error();
        if (file->valid())
            return std::unique_ptr<FileLock>(std::make_unique<HeldLock>(name, std::move(*file)));
        if (Clock::now() >= deadline)
            return Error{ErrorKind::tooManyOpen, EWOULDBLOCK, "another process holds the lock"};
        std::this_thread::sleep_for(nap);
    }
}

}  // namespace kelvane::linux_os
