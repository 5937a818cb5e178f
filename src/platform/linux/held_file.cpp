#include "platform/linux/held_file.h"

#include <fcntl.h>
#include <limits>
#include <signal.h>
#include <sys/stat.h>

#include "platform/linux/file_facts.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/file_metadata.h"
#include "platform/linux/os_error.h"
#include "platform/linux/shared_blocks.h"

namespace kelvane::linux_os {
namespace {

class LinuxHeldFile final : public HeldFile, public DescriptorHolder {
public:
    LinuxHeldFile(FileHandle file, std::string name, std::shared_ptr<Volumes> volumes)
        : file_(std::move(file)), name_(std::move(name)), volumes_(std::move(volumes))
    {
    }

    int descriptor() const override { return file_.get(); }

    Result<FileDetails> details() const override
    {
        struct statx facts {};
        if (!readOpenFacts(file_.get(), detailsMask(), facts))
            return osError(errno);
        return FactReader(*volumes_).details(facts, name_);
    }

    Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) override
    {
        constexpr std::uint64_t furthest = std::numeric_limits<off_t>::max();
        std::size_t filled = 0;
        while (filled < buffer.size() && offset + filled < furthest) {
            const std::span<std::byte> rest = buffer.subspan(filled);
            const ssize_t got = uninterrupted(
                [&] { return ::pread(file_.get(), rest.data(), rest.size(), static_cast<off_t>(offset + filled)); });
            if (got < 0)
                return osError(errno);
            if (got == 0)
                break;
            filled += static_cast<std::size_t>(got);
        }
        return filled;
    }

    Result<FileMetadata> metadata() const override { return readMetadata(file_.get()); }
    Result<std::uint64_t> sharedBytes() const override { return linux_os::sharedBytes(file_.get()); }

    // The kernel gives a lease for reading only while nobody has the file open for writing. Only the owner may ask, and
    // a network file system refuses for reasons of its own. Who opens the file for writing meanwhile makes the kernel
    // send a signal, which has to be one that ends no process.
    bool isBeingWritten() const override
    {
        struct statx facts {};
        if (!readOpenFacts(file_.get(), listingMask(), facts) || FactReader(*volumes_).volume(facts).network)
            return false;
        if (::fcntl(file_.get(), F_SETSIG, SIGURG) != 0)
            return false;
        if (::fcntl(file_.get(), F_SETLEASE, F_RDLCK) != 0)
            return errno == EAGAIN;
        static_cast<void>(::fcntl(file_.get(), F_SETLEASE, F_UNLCK));
        return false;
    }

    Status shareBlocks(HeldFile& source) override
    {
        const auto* held = dynamic_cast<const DescriptorHolder*>(&source);
        return held != nullptr ? linux_os::shareBlocks(held->descriptor(), file_.get()) : Status(osError(EINVAL));
    }

private:
    FileHandle file_;
    std::string name_;
    std::shared_ptr<Volumes> volumes_;
};

// Looking at a file leaves its time of access alone where the kernel allows that: to the owner.
int openQuietly(int folder, const char* name, int flags)
{
    const int quiet = uninterrupted([&] { return ::openat(folder, name, flags | O_NOATIME); });
    return quiet >= 0 || errno != EPERM ? quiet : uninterrupted([&] { return ::openat(folder, name, flags); });
}

// Never waits for the other end of a pipe. Only a lease that another program holds on a regular file makes an opening
// that must not wait fail with EWOULDBLOCK; there waiting is right.
FileHandle openWithoutWaiting(int folder, const char* name)
{
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
    FileHandle file(openQuietly(folder, name, flags | O_NONBLOCK));
    return file.valid() || errno != EWOULDBLOCK ? std::move(file) : FileHandle(openQuietly(folder, name, flags));
}

Error wrongType(int code)
{
    return {ErrorKind::wrongType, code, "not a regular file"};
}

}  // namespace

Result<std::unique_ptr<HeldFile>> openHeldFile(int folder, const std::string& name, std::shared_ptr<Volumes> volumes)
{
    FileHandle file = openWithoutWaiting(folder, name.c_str());
    if (!file.valid())
        return errno == ELOOP ? wrongType(ELOOP) : osError(errno);
    struct stat facts {};
    if (::fstat(file.get(), &facts) != 0)
        return osError(errno);
    if (!S_ISREG(facts.st_mode))
        return wrongType(0);
    return std::unique_ptr<HeldFile>(std::make_unique<LinuxHeldFile>(std::move(file), name, std::move(volumes)));
}

}  // namespace kelvane::linux_os
