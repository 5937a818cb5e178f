#include "platform/linux/open_folders.h"

#include <climits>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

struct Position {
    MountedVolume volume;
    std::uint64_t index = 0;
    friend bool operator==(const Position&, const Position&) = default;
};

Result<Position> positionOf(int file)
{
    struct statx facts {};
    if (!readOpenFacts(file, STATX_INO | STATX_MNT_ID, facts))
        return osError(errno);
    const std::uint64_t mount = (facts.stx_mask & STATX_MNT_ID) != 0 ? facts.stx_mnt_id : 0;
    return Position{{makedev(facts.stx_dev_major, facts.stx_dev_minor), mount}, facts.stx_ino};
}

FileHandle openNames(int folder, const char* path)
{
    return FileHandle(uninterrupted([&] { return ::openat(folder, path, O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

}  // namespace

Result<FileHandle> openForNames(const std::filesystem::path& folder)
{
    const auto anchored = AnchoredPath::make(folder);
    if (!anchored)
        return anchored.error();
    FileHandle handle = openNames(anchored->folder(), anchored->rest());
    if (!handle.valid())
        return osError(errno);
    return handle;
}

Result<MountedVolume> mountedVolumeOf(int file)
{
    const Result<Position> position = positionOf(file);
    if (!position)
        return position.error();
    return position->volume;
}

Result<FileHandle> topFolderOf(int folder)
{
    FileHandle here = openNames(folder, ".");
    Result<Position> at = here.valid() ? positionOf(here.get()) : osError(errno);
    while (at) {
        FileHandle above = openNames(here.get(), "..");
        const Result<Position> next = above.valid() ? positionOf(above.get()) : osError(errno);
        if (!next)
            return next.error();
        if (next->volume != at->volume || *next == *at)
            return here;
        here = std::move(above);
        at = next;
    }
    return at.error();
}

Result<std::filesystem::path> realPathOf(int file)
{
    std::string text(PATH_MAX, '\0');
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t length = ::readlink(link.c_str(), text.data(), text.size());
    if (length < 0)
        return osError(errno);
    text.resize(static_cast<std::size_t>(length));
    return std::filesystem::path(text);
}

}  // namespace kelvane::linux_os
