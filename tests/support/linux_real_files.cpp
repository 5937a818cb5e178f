#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>

#include "support/real_files.h"

namespace kelvane::testing {

bool makeSymbolicLink(const std::filesystem::path& path, const std::filesystem::path& target)
{
    std::filesystem::create_symlink(target, path);
    return true;
}

bool makeNeitherFileNorFolder(const std::filesystem::path& path)
{
    return ::mkfifo(path.c_str(), 0600) == 0;
}

bool makeStream(const std::filesystem::path& path, const std::string& stream, const std::string& contents)
{
    const std::string attribute = "user." + stream;
    return ::setxattr(path.c_str(), attribute.c_str(), contents.data(), contents.size(), 0) == 0;
}

void hide(const std::filesystem::path& /*path*/) {}

std::filesystem::path quickFolder()
{
    return ::access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
}

std::optional<std::filesystem::path> trashBelow(const std::filesystem::path& folder)
{
    ::setenv("XDG_DATA_HOME", folder.c_str(), 1);
    return folder / "Trash";
}

std::filesystem::path openable(const std::filesystem::path& path)
{
    return path;
}

bool openFilesMove()
{
    return true;
}

std::vector<std::string> unusualNames()
{
    return {"caf\xE9", "line\nbreak", " spaces ", "\xF0\x9F\x93\xB7", "a\\b", "-", "...", std::string(255, 'n')};
}

}  // namespace kelvane::testing
