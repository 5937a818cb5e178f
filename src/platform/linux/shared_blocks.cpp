#include "platform/linux/shared_blocks.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <vector>

#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

constexpr std::uint32_t extentsAtOnce = 200;
// The most that every file system takes in one call, ioctl_fideduperange(2).
constexpr std::uint64_t chunk = 16 * 1024 * 1024;

Result<std::uint64_t> sizeOf(int file)
{
    struct stat facts {};
    if (::fstat(file, &facts) != 0)
        return osError(errno);
    return static_cast<std::uint64_t>(facts.st_size);
}

// The structures of these calls end in an array; this is memory for one with so many elements.
template <class Head, class Element>
class Request {
public:
    explicit Request(std::size_t elements) : bytes_(sizeof(Head) + elements * sizeof(Element)) {}
    Head* operator->() { return reinterpret_cast<Head*>(bytes_.data()); }
    Head* get() { return reinterpret_cast<Head*>(bytes_.data()); }

private:
    std::vector<std::byte> bytes_;
};

using Extents = Request<fiemap, fiemap_extent>;

bool askForExtents(int file, std::uint64_t start, std::uint64_t length, Extents& extents)
{
    extents->fm_start = start;
    extents->fm_length = length;
    extents->fm_flags = FIEMAP_FLAG_SYNC;  // what was just written has no blocks yet
    extents->fm_mapped_extents = 0;
    extents->fm_extent_count = extentsAtOnce;
    return uninterrupted([&] { return ::ioctl(file, FS_IOC_FIEMAP, extents.get()); }) == 0;
}

bool hasNoExtents(int code)
{
    return code == ENOTSUP || code == ENOTTY || code == EINVAL || code == ENOSYS;
}

bool cannotShare(int code)
{
    return code == ENOTSUP || code == ENOTTY || code == EINVAL || code == ENOSYS || code == EXDEV;
}

Error sharingError(int code)
{
    Error error = osError(code);
    if (cannotShare(code))
        error.kind = ErrorKind::notSupported;
    return error;
}

Error different()
{
    return {ErrorKind::changed, 0, "the contents differ"};
}

// How many bytes came to be shared.
Result<std::uint64_t> shareChunk(int source, int target, std::uint64_t offset, std::uint64_t length)
{
    Request<file_dedupe_range, file_dedupe_range_info> request(1);
    request->src_offset = offset;
    request->src_length = length;
    request->dest_count = 1;
    request->info[0].dest_fd = target;
    request->info[0].dest_offset = offset;
    if (uninterrupted([&] { return ::ioctl(source, FIDEDUPERANGE, request.get()); }) != 0)
        return sharingError(errno);
    const file_dedupe_range_info& answer = request->info[0];
    if (answer.status == FILE_DEDUPE_RANGE_DIFFERS)
        return different();
    if (answer.status < 0)
        return sharingError(-answer.status);
    if (answer.bytes_deduped == 0 && length > 0)
        return osError(EIO);
    return std::min<std::uint64_t>(answer.bytes_deduped, length);
}

}  // namespace

Result<std::uint64_t> sharedBytes(int file)
{
    const Result<std::uint64_t> size = sizeOf(file);
    if (!size)
        return size;
    Extents extents(extentsAtOnce);
    std::uint64_t shared = 0;
    for (std::uint64_t start = 0; start < *size;) {
        if (!askForExtents(file, start, *size - start, extents))
            return hasNoExtents(errno) ? Result<std::uint64_t>(shared) : osError(errno);
        const std::uint64_t before = start;
        for (std::uint32_t i = 0; i < extents->fm_mapped_extents; ++i) {
            const fiemap_extent& extent = extents->fm_extents[i];
            const std::uint64_t end = std::min<std::uint64_t>(extent.fe_logical + extent.fe_length, *size);
            const std::uint64_t begin = std::max<std::uint64_t>(extent.fe_logical, start);
            if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0 && end > begin)
                shared += end - begin;
            start = std::max(start, end);
        }
        if (start == before)
            break;  // only a hole is left
    }
    return shared;
}

Status shareBlocks(int source, int target)
{
    const Result<std::uint64_t> size = sizeOf(source);
    const Result<std::uint64_t> targetSize = sizeOf(target);
    if (!size || !targetSize)
        return size ? targetSize.error() : size.error();
    if (*size != *targetSize)
        return different();
    // An empty file is asked about as well: the file system shall say whether it could.
    std::uint64_t done = 0;
    do {
        const Result<std::uint64_t> shared = shareChunk(source, target, done, std::min(chunk, *size - done));
        if (!shared)
            return shared.error();
        done += *shared;
    } while (done < *size);
    return {};
}

}  // namespace kelvane::linux_os
