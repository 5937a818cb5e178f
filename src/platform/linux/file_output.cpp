#include "platform/file_output.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>

#include "platform/linux/adapters.h"
#include "platform/linux/anchored_path.h"
#include "platform/linux/file_access.h"
#include "platform/linux/file_lock.h"
#include "platform/linux/os_error.h"
#include "platform/linux/whole_writes.h"

namespace kelvane {
namespace {

using linux_os::AnchoredPath;
using linux_os::FileHandle;
using linux_os::osError;
using linux_os::uninterrupted;

constexpr int mostLinks = 40;  // as the kernel follows

Status answer(int result)
{
    return result == 0 ? Status() : Status(osError(errno));
}

class DescriptorFile final : public OutputFile {
public:
    explicit DescriptorFile(FileHandle file) : file_(std::move(file)) {}

    Status write(std::span<const std::byte> bytes) override { return linux_os::writeAll(file_.get(), bytes); }

    Status flush() override
    {
        return answer(uninterrupted([&] { return ::fsync(file_.get()); }));
    }

    // Not repeated after a signal: the descriptor is gone by then.
    Status close() override
    {
        const int descriptor = file_.release();
        if (descriptor < 0)
            return osError(EBADF);
        return ::close(descriptor) == 0 || errno == EINTR ? Status() : Status(osError(errno));
    }

private:
    FileHandle file_;
};

// Not blocking, since a pipe of this name would wait for its reader.
Result<std::unique_ptr<OutputFile>> openForWriting(const std::filesystem::path& path, int flags)
{
    const Result<AnchoredPath> at = AnchoredPath::make(path);
    if (!at)
        return at.error();
    constexpr int always = O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    FileHandle file(uninterrupted([&] { return ::openat(at->folder(), at->rest(), flags | always, 0600); }));
    if (!file.valid())
        return osError(errno);
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0)
        return osError(errno);
    if (!S_ISREG(status.st_mode))
        return osError(ENODEV);
    return std::unique_ptr<OutputFile>(std::make_unique<DescriptorFile>(std::move(file)));
}

// What the link says; nothing when the path is no link or not there.
Result<std::filesystem::path> readLink(const std::filesystem::path& path)
{
    const Result<AnchoredPath> at = AnchoredPath::make(path);
    if (!at)
        return at.error();
    std::string text(PATH_MAX, '\0');
    const ssize_t length = ::readlinkat(at->folder(), at->rest(), text.data(), text.size());
    if (length < 0)
        return errno == EINVAL || errno == ENOENT ? Result<std::filesystem::path>(std::filesystem::path())
                                                  : osError(errno);
    text.resize(static_cast<std::size_t>(length));
    return std::filesystem::path(text);
}

// File systems that keep no folders of their own cannot flush one.
Status flushOpenFolder(int folder)
{
    if (uninterrupted([&] { return ::fsync(folder); }) == 0 || errno == EINVAL || errno == ENOTSUP)
        return {};
    return osError(errno);
}

// Success also when another process makes the folder at the same time.
Status makeFolder(const std::filesystem::path& folder)
{
    const Result<AnchoredPath> at = AnchoredPath::make(folder);
    if (!at)
        return at.error();
    if (::mkdirat(at->folder(), at->rest(), 0700) == 0)
        return {};
    const int code = errno;
    struct stat status = {};
    if (::fstatat(at->folder(), at->rest(), &status, 0) != 0)
        return osError(code);
    return S_ISDIR(status.st_mode) ? Status() : Status(osError(ENOTDIR));
}

class LinuxFileOutput final : public FileOutput {
public:
    Result<std::unique_ptr<OutputFile>> create(const std::filesystem::path& path) override
    {
        return openForWriting(path, O_EXCL);
    }

    Result<std::unique_ptr<OutputFile>> append(const std::filesystem::path& path) override
    {
        return openForWriting(path, O_APPEND);
    }

    Status replace(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        const Result<AnchoredPath> source = AnchoredPath::make(from);
        const Result<AnchoredPath> target = AnchoredPath::make(to);
        if (!source || !target)
            return source ? target.error() : source.error();
        // Renaming over a device or a pipe would take it away from everybody.
        struct stat there {};
        if (::fstatat(target->folder(), target->rest(), &there, AT_SYMLINK_NOFOLLOW) == 0 && !S_ISREG(there.st_mode))
            return Error{ErrorKind::wrongType, 0, {}};
        return answer(::renameat(source->folder(), source->rest(), target->folder(), target->rest()));
    }

    Status flushFolder(const std::filesystem::path& folder) override
    {
        const Result<AnchoredPath> at = AnchoredPath::make(folder);
        if (!at)
            return at.error();
        const FileHandle handle(
            uninterrupted([&] { return ::openat(at->folder(), at->rest(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        return handle.valid() ? flushOpenFolder(handle.get()) : Status(osError(errno));
    }

    Status remove(const std::filesystem::path& path) override
    {
        const Result<AnchoredPath> at = AnchoredPath::make(path);
        return at ? answer(::unlinkat(at->folder(), at->rest(), 0)) : Status(at.error());
    }

    Status createFolders(const std::filesystem::path& folder) override
    {
        std::filesystem::path made;
        for (const std::filesystem::path& part : folder) {
            made /= part;
            if (part.empty() || made == made.root_path())
                continue;
            if (const Status done = makeFolder(made); !done)
                return done;
        }
        return {};
    }

    Status copyAccess(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        return linux_os::copyAccessRights(from, to);
    }

    Result<std::filesystem::path> target(const std::filesystem::path& path) override
    {
        std::filesystem::path current = path;
        for (int followed = 0; followed <= mostLinks; ++followed) {
            const Result<std::filesystem::path> link = readLink(current);
            if (!link || link->empty())
                return link ? Result<std::filesystem::path>(current) : link;
            current = current.parent_path() / *link;  // an absolute one stands alone
        }
        return osError(ELOOP);
    }

    Result<std::unique_ptr<FileLock>> lock(const std::filesystem::path& path, std::uint32_t milliseconds) override
    {
        const Result<std::filesystem::path> guarded = target(path);
        if (!guarded)
            return guarded.error();
        return linux_os::lockBeside(*guarded, milliseconds);
    }
};

}  // namespace

std::unique_ptr<FileOutput> makeLinuxFileOutput()
{
    return std::make_unique<LinuxFileOutput>();
}

}  // namespace kelvane
