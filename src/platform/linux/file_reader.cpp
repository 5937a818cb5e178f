#include "platform/linux/file_reader.h"

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

// From this size on the system's read-ahead is worth a call of its own.
constexpr std::uint64_t hintFrom = 256 * 1024;

constexpr std::uint64_t furthest = std::numeric_limits<off_t>::max();

// Keeps its own position, so that skipping costs no system call.
class FileReader final : public ContentReader {
public:
    FileReader(FileHandle file, std::uint64_t sizeAtOpening, bool hidden, Volumes& volumes)
        : file_(std::move(file)), sizeAtOpening_(sizeAtOpening), hidden_(hidden), volumes_(volumes)
    {
    }

    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        std::size_t filled = 0;
        while (filled < buffer.size() && position_ < furthest) {
            const ssize_t got = uninterrupted([&] {
                return ::pread(file_.get(), buffer.data() + filled, buffer.size() - filled,
                               static_cast<off_t>(position_));
            });
            if (got < 0)
                return osError(errno);
            filled += static_cast<std::size_t>(got);
            position_ += static_cast<std::uint64_t>(got);
            if (got == 0 || reachedKnownEnd())
                break;
        }
        return filled;
    }

    Status skip(std::uint64_t bytes) override
    {
        position_ += std::min(bytes, furthest - position_);
        return {};
    }

    Result<FileInfo> info() const override
    {
        struct stat facts {};
        if (::fstat(file_.get(), &facts) != 0)
            return osError(errno);
        return FactReader(volumes_).info(facts, hidden_ ? "." : "");
    }

private:
    // Spares the read that would only say 0. A file that says to be empty may hold something all the same.
    bool reachedKnownEnd() const { return sizeAtOpening_ != 0 && position_ >= sizeAtOpening_; }

    FileHandle file_;
    std::uint64_t sizeAtOpening_;
    std::uint64_t position_ = 0;
    bool hidden_;
    Volumes& volumes_;
};

// Never waits for the other end of a pipe. Only a lease that another program holds on a regular file makes an opening
// that must not wait fail with EWOULDBLOCK; there waiting is right.
FileHandle openForReadingAt(int folder, const char* path, Links links)
{
    const int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | (links == Links::asThemselves ? O_NOFOLLOW : 0);
    FileHandle file(uninterrupted([&] { return ::openat(folder, path, flags | O_NONBLOCK); }));
    if (!file.valid() && errno == EWOULDBLOCK)
        file = FileHandle(uninterrupted([&] { return ::openat(folder, path, flags); }));
    return file;
}

Error wrongType()
{
    return {ErrorKind::wrongType, 0, "not a regular file"};
}

void hint(const FileHandle& file, std::uint64_t size, ReadPattern pattern)
{
    if (size >= hintFrom)
        ::posix_fadvise(file.get(), 0, 0,
                        pattern == ReadPattern::sequential ? POSIX_FADV_SEQUENTIAL : POSIX_FADV_RANDOM);
}

}  // namespace

Result<OpenFile> openRegularFile(const std::filesystem::path& path, Links links)
{
    const auto anchored = AnchoredPath::make(path);
    if (!anchored)
        return anchored.error();
    FileHandle file = openForReadingAt(anchored->folder(), anchored->rest(), links);
    if (!file.valid())
        return errno == ELOOP && links == Links::asThemselves ? wrongType() : osError(errno);
    struct stat facts {};
    if (::fstat(file.get(), &facts) != 0)
        return osError(errno);
    if (!S_ISREG(facts.st_mode))
        return wrongType();
    return OpenFile{std::move(file), static_cast<std::uint64_t>(facts.st_size)};
}

Result<std::unique_ptr<ContentReader>> readRegularFile(const std::filesystem::path& path, ReadPattern pattern,
                                                       Links links, Volumes& volumes)
{
    auto file = openRegularFile(path, links);
    if (!file)
        return file.error();
    hint(file->handle, file->size, pattern);
    const bool hidden = path.native().find("/.", path.native().rfind('/')) != std::string::npos;
    return std::unique_ptr<ContentReader>(
        std::make_unique<FileReader>(std::move(file->handle), file->size, hidden, volumes));
}

}  // namespace kelvane::linux_os
