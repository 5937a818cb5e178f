#include <fstream>
#include <iostream>
#include <windows.h>

#include "platform/windows/handle.h"
#include "platform/windows/system_path.h"
#include "support/real_files.h"

namespace kelvane::testing {
namespace {

bool hasStream(const std::filesystem::path& path, const std::filesystem::path& name)
{
    WIN32_FIND_STREAM_DATA found{};
    const windows_os::FindHandle search(::FindFirstStreamW(path.c_str(), FindStreamInfoStandard, &found, 0));
    for (bool more = search.valid(); more; more = ::FindNextStreamW(search.get(), &found) != 0) {
        if (name == found.cStreamName)
            return true;
    }
    return false;
}

bool isWine()
{
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace

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
    std::ofstream(name, std::ios::binary) << contents;
    if (hasStream(path, ":" + stream + ":$DATA"))
        return true;
    ::DeleteFileW(name.c_str());  // Wine makes a file of that name
    return false;
}

void hide(const std::filesystem::path& path)
{
    ::SetFileAttributesW(path.c_str(), ::GetFileAttributesW(path.c_str()) | FILE_ATTRIBUTE_HIDDEN);
}

std::filesystem::path quickFolder()
{
    return std::filesystem::temp_directory_path();
}

std::optional<std::filesystem::path> trashBelow(const std::filesystem::path& /*folder*/)
{
    return std::nullopt;
}

std::filesystem::path openable(const std::filesystem::path& path)
{
    return windows_os::systemPath(path);
}

bool openFilesMove()
{
    return !isWine();
}

std::vector<std::string> unusualNames()
{
    std::vector<std::string> names{"caf\xC3\xA9", " spaces ", "\xF0\x9F\x93\xB7",   "dot.",
                                   "aux.txt",     "a;[b]{c}", std::string(255, 'n')};
    if (isWine())
        std::cout << "Wine keeps its files under UTF-8 names, which cannot hold half a surrogate pair\n";
    else
        names.emplace_back("\xED\xA0\x80 half a pair");
    return names;
}

}  // namespace kelvane::testing
