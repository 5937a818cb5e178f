#include <fstream>
#include <windows.h>

#include "platform/windows/system_path.h"
#include "support/real_files.h"

namespace kelvane::testing {

// Wine says that it made the link and makes none.
bool makeSymbolicLink(const std::filesystem::path& path, const std::filesystem::path& target)
{
    std::filesystem::path preferred = target;
    preferred.make_preferred();
    DWORD flags = SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE;
    if (std::filesystem::is_directory(path.parent_path() / preferred))
        flags |= SYMBOLIC_LINK_FLAG_DIRECTORY;
    return ::CreateSymbolicLinkW(path.c_str(), preferred.c_str(), flags) != 0 &&
           ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool makeNeitherFileNorFolder(const std::filesystem::path& /*path*/)
{
    return false;
}

bool makeStream(const std::filesystem::path& path, const std::string& stream, const std::string& contents)
{
    std::filesystem::path name = path;
    name += ":" + stream;
    std::ofstream file(name, std::ios::binary);
    file << contents;
    file.close();
    return file.good();
}

void hide(const std::filesystem::path& path)
{
    ::SetFileAttributesW(path.c_str(), ::GetFileAttributesW(path.c_str()) | FILE_ATTRIBUTE_HIDDEN);
}

std::filesystem::path openable(const std::filesystem::path& path)
{
    return windows_os::systemPath(path);
}

std::vector<std::string> unusualNames()
{
    return {"caf\xC3\xA9", "\xED\xA0\x80 half a pair", " spaces ", "\xF0\x9F\x93\xB7", "dot.", "aux.txt",
            "a;[b]{c}",    std::string(255, 'n')};
}

}  // namespace kelvane::testing
