// A folder whose path is longer than the kernel takes in one call.
#pragma once

#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kelvane::testing {

// Made below `root`, with one file "file" in it that holds "deep".
[[nodiscard]] inline std::filesystem::path makeDeepFolder(const std::filesystem::path& root)
{
    std::filesystem::path deep = root;
    int at = ::open(root.c_str(), O_PATH | O_CLOEXEC);
    const std::string name(200, 'd');
    while (deep.native().size() < 5000 && at >= 0) {
        deep /= name;
        const int above = at;
        at = ::mkdirat(above, name.c_str(), 0700) == 0 ? ::openat(above, name.c_str(), O_PATH | O_CLOEXEC) : -1;
        ::close(above);
    }
    const int file = ::openat(at, "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, "deep", 4) != 4)
        throw std::runtime_error("no deep folder could be made");
    ::close(file);
    ::close(at);
    return deep;
}

}  // namespace kelvane::testing
