#include "platform/linux/link_helper/guarded_path.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace kelvane::linux_os {
namespace {

constexpr int folderOnly = O_PATH | O_NOFOLLOW | O_DIRECTORY | O_CLOEXEC;

bool isPlainName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." && name.find('\0') == std::string_view::npos;
}

FileHandle openFolder(int from, const char* name)
{
    return FileHandle(uninterrupted([&] { return ::openat(from, name, folderOnly); }));
}

}  // namespace

std::optional<std::vector<std::string>> namesOf(std::string_view relative)
{
    std::vector<std::string> names;
    for (;;) {
        const auto slash = relative.find('/');
        const auto name = relative.substr(0, slash);
        if (!isPlainName(name))
            return std::nullopt;
        names.emplace_back(name);
        if (slash == std::string_view::npos)
            return names;
        relative.remove_prefix(slash + 1);
    }
}

std::optional<std::vector<std::string>> namesOfAbsolute(std::string_view path)
{
    return path.starts_with('/') ? namesOf(path.substr(1)) : std::nullopt;
}

FileHandle openSystemRoot()
{
    return openFolder(AT_FDCWD, "/");
}

FileHandle stepDown(const FileHandle& from, const std::vector<std::string>& names)
{
    FileHandle here(::fcntl(from.get(), F_DUPFD_CLOEXEC, 0));
    for (const std::string& name : names) {
        if (!here.valid())
            break;
        here = openFolder(here.get(), name.c_str());
    }
    return here;
}

bool mayList(const FileHandle& folder)
{
    constexpr int forListing = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    return FileHandle(uninterrupted([&] { return ::openat(folder.get(), ".", forListing); })).valid();
}

bool leadsToFileOrFolder(const FileHandle& from, std::vector<std::string> names)
{
    const std::string last = std::move(names.back());
    names.pop_back();
    const FileHandle folder = stepDown(from, names);
    struct stat facts {};
    return folder.valid() && ::fstatat(folder.get(), last.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
           (S_ISREG(facts.st_mode) || S_ISDIR(facts.st_mode));
}

}  // namespace kelvane::linux_os
