#include "platform/windows/recycle_bins.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/windows/name_changes.h"
#include "platform/windows/os_error.h"
#include "platform/windows/recycling.h"
#include "platform/windows/system_path.h"
#include "platform/windows/trash_paths.h"

namespace kelvane::windows_os {
namespace {

namespace fs = std::filesystem;

constexpr DWORD longestPath = 32 * 1024;  // in units, with its end

Error noBin(const char* why)
{
    return {ErrorKind::notSupported, ERROR_NOT_SUPPORTED, why};
}

Result<std::wstring> volumeOf(const fs::path& path)
{
    std::wstring text(longestPath, L'\0');
    if (::GetVolumePathNameW(systemPath(path).c_str(), text.data(), longestPath) == 0)
        return lastError();
    return plainPath(text.c_str()).native();
}

// A person can have a volume's bin switched off; the setting stands under the volume's own name.
bool isSwitchedOff(const std::wstring& volume)
{
    wchar_t name[64] = {};  // "\\?\Volume{...}\"
    if (::GetVolumeNameForVolumeMountPointW(volume.c_str(), name, static_cast<DWORD>(std::size(name))) == 0)
        return false;
    const std::wstring_view text = name;
    const std::size_t begin = text.find(L'{'), end = text.find(L'}');
    if (begin == std::wstring_view::npos || end == std::wstring_view::npos)
        return false;
    const std::wstring key = LR"(Software\Microsoft\Windows\CurrentVersion\Explorer\BitBucket\Volume\)" +
                             std::wstring(text.substr(begin, end + 1 - begin));
    DWORD value = 0, size = sizeof value;
    return ::RegGetValueW(HKEY_CURRENT_USER, key.c_str(), L"NukeOnDelete", RRF_RT_REG_DWORD, nullptr, &value, &size) ==
               ERROR_SUCCESS &&
           value != 0;
}

}  // namespace

Status canRecycle(const fs::path& path)
{
    const auto volume = volumeOf(path);
    if (!volume)
        return volume.error();
    if (::GetDriveTypeW(volume->c_str()) != DRIVE_FIXED)
        return noBin("only fixed drives have a recycle bin");
    const ComOnThread com;
    if (FAILED(com.result()) || !shellRecycles())
        return noBin("the shell of this system moves nothing to the recycle bin");
    SHQUERYRBINFO info{};
    info.cbSize = sizeof info;
    if (const HRESULT result = ::SHQueryRecycleBinW(volume->c_str(), &info); FAILED(result))
        return noBin("this volume has no recycle bin");
    return isSwitchedOff(*volume) ? Status(noBin("the recycle bin of this volume is switched off")) : Status();
}

Status restoreRecycled(const fs::path& trashed, const fs::path& place)
{
    if (!liesInTrash(trashed))
        return osError(ERROR_INVALID_NAME);
    if (const Status moved = renameFile(systemPath(trashed), systemPath(place)); !moved)
        return moved;
    // A note without its item is cleared away by the shell as well; failing here harms nothing.
    if (const auto note = trashNote(trashed))
        ::DeleteFileW(systemPath(*note).c_str());
    return {};
}

}  // namespace kelvane::windows_os
