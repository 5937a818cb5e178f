#include "platform/linux/private_folders.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {

int makePrivateFolders(const std::filesystem::path& folder)
{
    if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST)
        return 0;
    if (errno != ENOENT || !folder.has_relative_path())
        return errno;
    if (const int error = makePrivateFolders(folder.parent_path()); error != 0)
        return error;
    return ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

Status checkOwnFolder(const std::filesystem::path& folder)
{
    struct stat info {};
    if (::stat(folder.c_str(), &info) != 0)
        return osError(errno);
    if (!S_ISDIR(info.st_mode))
        return osError(ENOTDIR);
    if (info.st_uid != ::geteuid() || (info.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return Error{ErrorKind::accessDenied, 0, "others may change its folder"};
    return {};
}

Status makeOwnFolder(const std::filesystem::path& folder)
{
    Status checked = checkOwnFolder(folder);
    if (checked || checked.error().systemCode != ENOENT)
        return checked;
    if (const int error = makePrivateFolders(folder); error != 0)
        return osError(error);
    return checkOwnFolder(folder);
}

}  // namespace kelvane::linux_os
