#include "platform/linux/file_access.h"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

Result<struct stat> statusOf(const AnchoredPath& at)
{
    struct stat status = {};
    if (::fstatat(at.folder(), at.rest(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return osError(errno);
    return status;
}

// Best effort: file systems without access lists have none to copy.
void copyAccessList(const AnchoredPath& from, int to)
{
    std::array<char, 65536> list;
    const ssize_t size = ::lgetxattr(from.standIn().c_str(), accessListAttribute, list.data(), list.size());
    if (size > 0)
        static_cast<void>(::fsetxattr(to, accessListAttribute, list.data(), static_cast<std::size_t>(size), 0));
}

}  // namespace

Status copyAccessRights(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const Result<AnchoredPath> source = AnchoredPath::make(from);
    const Result<AnchoredPath> target = AnchoredPath::make(to);
    if (!source || !target)
        return source ? target.error() : source.error();
    const Result<struct stat> status = statusOf(*source);
    if (!status)
        return status.error();
    const FileHandle file(uninterrupted(
        [&] { return ::openat(target->folder(), target->rest(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    if (!file.valid())
        return osError(errno);
    // Set apart: a member of the group may give the file to it, but only the system's administrator to another owner.
    const bool grouped = ::fchown(file.get(), static_cast<uid_t>(-1), status->st_gid) == 0;
    const bool owned = ::fchown(file.get(), status->st_uid, static_cast<gid_t>(-1)) == 0;
    if (::fchmod(file.get(), status->st_mode & (grouped ? 0777u : 0707u)) != 0)
        return osError(errno);
    if (grouped && owned)
        copyAccessList(*source, file.get());
    return {};
}

}  // namespace kelvane::linux_os
