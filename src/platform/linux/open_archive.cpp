#include "platform/linux/open_archive.h"

#include <array>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <vector>

#include "platform/linux/anchored_path.h"
#include "platform/linux/os_error.h"
#include "platform/linux/utf8_names.h"

namespace kelvane::linux_os {
namespace {

constexpr std::size_t blockSize = 128 * 1024;

void enableFormats(archive* handle)
{
    for (const auto enable :
         {archive_read_support_format_7zip, archive_read_support_format_ar, archive_read_support_format_cab,
          archive_read_support_format_cpio, archive_read_support_format_iso9660, archive_read_support_format_lha,
          archive_read_support_format_rar, archive_read_support_format_rar5, archive_read_support_format_tar,
          archive_read_support_format_xar, archive_read_support_format_zip})
        enable(handle);
}

void enableFilters(archive* handle)
{
    for (const auto enable :
         {archive_read_support_filter_bzip2, archive_read_support_filter_compress, archive_read_support_filter_gzip,
          archive_read_support_filter_lz4, archive_read_support_filter_lzip, archive_read_support_filter_lzma,
          archive_read_support_filter_rpm, archive_read_support_filter_xz, archive_read_support_filter_zstd})
        enable(handle);
}

Result<FileHandle> openFile(const std::filesystem::path& path)
{
    const auto anchored = AnchoredPath::make(path);
    if (!anchored)
        return anchored.error();
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    FileHandle file(uninterrupted([&] { return ::openat(anchored->folder(), anchored->rest(), flags); }));
    if (!file.valid())
        return osError(errno);
    return file;
}

Result<ArchiveStamp> stampOf(const FileHandle& file)
{
    struct stat facts {};
    if (::fstat(file.get(), &facts) != 0)
        return osError(errno);
    if (!S_ISREG(facts.st_mode))
        return Error{ErrorKind::wrongType, 0, "not a regular file"};
    return ArchiveStamp{{facts.st_dev, facts.st_ino},
                        {static_cast<std::uint64_t>(facts.st_size)},
                        fileTimeFromUnix(facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec)};
}

}  // namespace

OpenArchive::OpenArchive(FileHandle file, ArchiveStamp stamp)
    : file_(std::move(file)), stamp_(stamp), handle_(archive_read_new())
{
    if (!handle_)
        throw std::bad_alloc();
    enableFormats(handle_.get());
    enableFilters(handle_.get());
}

Result<std::unique_ptr<OpenArchive>> OpenArchive::open(const std::filesystem::path& path)
{
    auto file = openFile(path);
    if (!file)
        return file.error();
    const auto stamp = stampOf(*file);
    if (!stamp)
        return stamp.error();
    const Utf8Names names;
    std::unique_ptr<OpenArchive> opened(new OpenArchive(std::move(*file), *stamp));
    if (archive_read_open_fd(opened->handle_.get(), opened->file_.get(), blockSize) != ARCHIVE_OK)
        return opened->lastError();
    return opened;
}

// The library's codes beside errno's are negative or beyond it, hence only its text is passed on.
Error OpenArchive::lastError() const
{
    const char* text = archive_error_string(handle_.get());
    return {ErrorKind::invalid, 0, text ? text : "damaged archive"};
}

Result<bool> OpenArchive::next()
{
    if (damage_)
        return *damage_;
    const Utf8Names names;
    const int code = archive_read_next_header(handle_.get(), &entry_);
    if (code == ARCHIVE_EOF)
        return false;
    if (code != ARCHIVE_OK && code != ARCHIVE_WARN) {
        damage_ = lastError();
        return *damage_;
    }
    ++nextOrdinal_;
    return true;
}

std::string_view OpenArchive::storedPath() const
{
    const Utf8Names names;
    const char* path = archive_entry_pathname(entry_);
    return path ? std::string_view(path) : std::string_view();
}

std::optional<FileKind> OpenArchive::kind() const
{
    if (archive_entry_hardlink(entry_))  // says only which other entry has the contents
        return std::nullopt;
    switch (archive_entry_filetype(entry_)) {
    case AE_IFREG:
        return FileKind::regular;
    case AE_IFDIR:
        return FileKind::folder;
    default:
        return std::nullopt;
    }
}

FileTime OpenArchive::modified() const
{
    if (archive_entry_mtime_is_set(entry_) == 0)
        return {};
    return fileTimeFromUnix(archive_entry_mtime(entry_), archive_entry_mtime_nsec(entry_));
}

bool OpenArchive::encrypted() const
{
    return archive_entry_is_data_encrypted(entry_) != 0;
}

Result<FileSize> OpenArchive::size()
{
    if (archive_entry_size_is_set(entry_) != 0)
        return FileSize{static_cast<std::uint64_t>(std::max<la_int64_t>(archive_entry_size(entry_), 0))};
    std::vector<std::byte> scratch(blockSize);
    FileSize size;
    for (;;) {
        const auto got = read(scratch);
        if (!got)
            return got.error();
        size.bytes += *got;
        if (*got < scratch.size())
            return size;
    }
}

Result<std::size_t> OpenArchive::read(std::span<std::byte> buffer)
{
    if (damage_)
        return *damage_;
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const la_ssize_t got = archive_read_data(handle_.get(), buffer.data() + filled, buffer.size() - filled);
        if (got < 0) {
            damage_ = lastError();
            return *damage_;
        }
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

}  // namespace kelvane::linux_os
