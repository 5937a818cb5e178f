#include "platform/linux/anchored_path.h"

#include <climits>
#include <fcntl.h>
#include <string>
#include <string_view>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

constexpr std::size_t longestPath = PATH_MAX - 1;

FileHandle openFolderAt(int folder, const std::string& path)
{
    constexpr int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    return FileHandle(uninterrupted([&] { return ::openat(folder, path.c_str(), flags); }));
}

}  // namespace

Result<AnchoredPath> AnchoredPath::make(const std::filesystem::path& path)
{
    const std::string& full = path.native();
    if (full.empty() || full.find('\0') != std::string::npos)
        return osError(EINVAL);
    FileHandle folder;
    std::size_t at = 0;
    while (full.size() - at > longestPath) {
        const std::size_t slash = full.rfind('/', at + longestPath);
        if (slash == std::string::npos || slash <= at)
            return osError(ENAMETOOLONG);
        FileHandle next = openFolderAt(folder.valid() ? folder.get() : AT_FDCWD, full.substr(at, slash - at));
        if (!next.valid())
            return osError(errno);
        folder = std::move(next);
        at = full.find_first_not_of('/', slash);
        if (at == std::string::npos)
            return AnchoredPath(std::move(folder), ".");
    }
    return AnchoredPath(std::move(folder), full.c_str() + at);
}

int AnchoredPath::folder() const
{
    return folder_.valid() ? folder_.get() : AT_FDCWD;
}

std::filesystem::path AnchoredPath::standIn() const
{
    if (!folder_.valid())
        return rest_;
    return "/proc/self/fd/" + std::to_string(folder_.get()) + "/" + rest_;
}

}  // namespace kelvane::linux_os
