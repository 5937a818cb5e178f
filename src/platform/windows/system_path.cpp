#include "platform/windows/system_path.h"

#include <algorithm>
#include <windows.h>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"

namespace kelvane::windows_os {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view extended = LR"(\\?\)";
constexpr std::wstring_view extendedShare = LR"(\\?\UNC\)";
constexpr DWORD longestPath = 32 * 1024;  // in units, with its end
constexpr std::wstring_view device = LR"(\\.\)";

bool isDots(const fs::path& part)
{
    return part.native() == L"." || part.native() == L"..";
}

bool needsSettling(const fs::path& path)
{
    return path.native().find(L'/') != std::wstring::npos || std::any_of(path.begin(), path.end(), isDots);
}

}  // namespace

std::wstring systemPath(const fs::path& path)
{
    if (path.native().starts_with(extended) || path.native().starts_with(device))
        return path.native();
    const std::wstring plain = needsSettling(path) ? path.lexically_normal().make_preferred().native() : path.native();
    if (plain.size() >= 3 && plain[1] == L':' && plain[2] == L'\\')
        return std::wstring(extended) += plain;
    if (plain.starts_with(LR"(\\)"))
        return std::wstring(extendedShare) += plain.substr(2);
    return plain;
}

fs::path plainPath(std::wstring_view systemPath)
{
    if (systemPath.starts_with(extendedShare))
        return LR"(\\)" + std::wstring(systemPath.substr(extendedShare.size()));
    if (systemPath.starts_with(extended) && systemPath.substr(extended.size() + 1).starts_with(L':'))
        systemPath.remove_prefix(extended.size());
    return systemPath;
}

std::optional<std::wstring> pathOfHandle(HANDLE handle)
{
    std::wstring text(longestPath, L'\0');
    for (const DWORD volume : {DWORD{VOLUME_NAME_DOS}, DWORD{VOLUME_NAME_GUID}}) {
        const DWORD length =
            ::GetFinalPathNameByHandleW(handle, text.data(), longestPath, FILE_NAME_NORMALIZED | volume);
        if (length > 0 && length < longestPath)
            return text.substr(0, length);
    }
    return std::nullopt;
}

std::optional<fs::path> finalPath(const fs::path& path)
{
    const Handle file(openToLook(systemPath(path), true));
    if (!file.valid())
        return std::nullopt;
    const auto found = pathOfHandle(file.get());
    return found ? std::optional(plainPath(*found)) : std::nullopt;
}

}  // namespace kelvane::windows_os
