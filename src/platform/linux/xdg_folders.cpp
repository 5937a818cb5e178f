#include "platform/linux/xdg_folders.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace kelvane::linux_os {
namespace {

using std::filesystem::path;

path homeOfUser()
{
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return "/";
    return path(entry.pw_dir).is_absolute() ? path(entry.pw_dir) : path("/");
}

path home()
{
    const path own = folderFromVariable("HOME");
    return own.empty() ? homeOfUser() : own;
}

}  // namespace

path folderFromVariable(const char* variable)
{
    const char* text = std::getenv(variable);
    path found = text != nullptr ? path(text) : path();
    return found.is_absolute() ? found : path();
}

path xdgFolder(const char* variable, const char* belowHome)
{
    const path own = folderFromVariable(variable);
    return own.empty() ? home() / belowHome : own;
}

}  // namespace kelvane::linux_os
