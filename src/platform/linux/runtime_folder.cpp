#include "platform/linux/runtime_folder.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

constexpr mode_t forOwnerOnly = 0700;

// Itself, never what a link leads to.
Status checkPrivate(const std::filesystem::path& folder)
{
    struct stat facts {};
    if (::lstat(folder.c_str(), &facts) != 0)
        return osError(errno);
    const bool ours = S_ISDIR(facts.st_mode) && facts.st_uid == ::geteuid() && (facts.st_mode & 0777) == forOwnerOnly;
    if (!ours)
        return Error{ErrorKind::accessDenied, 0, "the folder for running programs is not the user's own"};
    return {};
}

// A slash at the end would make the system follow a link.
std::filesystem::path withoutSlash(const std::filesystem::path& path)
{
    return path.has_filename() ? path : path.parent_path();
}

std::filesystem::path ownFolder(const RuntimePlaces& places)
{
    return places.temporary / ("kelvane-" + std::to_string(::geteuid()));
}

}  // namespace

Result<std::filesystem::path> findRuntimeFolder(const RuntimePlaces& places)
{
    const auto offered = withoutSlash(places.offered);
    if (offered.is_absolute() && checkPrivate(offered))
        return offered;
    auto own = ownFolder(places);
    if (const Status status = checkPrivate(own); !status)
        return status.error();
    return own;
}

Result<std::filesystem::path> makeRuntimeFolder(const RuntimePlaces& places)
{
    auto found = findRuntimeFolder(places);
    if (found || found.error().kind != ErrorKind::notFound)
        return found;
    // Another process may be first, or have put something else there: what counts is what is there then.
    if (::mkdir(ownFolder(places).c_str(), forOwnerOnly) != 0 && errno != EEXIST)
        return osError(errno);
    return findRuntimeFolder(places);
}

}  // namespace kelvane::linux_os
