#include <memory>
#include <windows.h>

#include <shlobj.h>

#include "platform/windows/adapters.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

struct FreeTaskMemory {
    void operator()(wchar_t* text) const { ::CoTaskMemFree(text); }
};

}  // namespace

std::optional<std::filesystem::path> knownFolder(const _GUID& id)
{
    wchar_t* found = nullptr;
    const HRESULT result = ::SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &found);
    const std::unique_ptr<wchar_t, FreeTaskMemory> freed(found);
    return SUCCEEDED(result) && found ? std::optional<std::filesystem::path>(found) : std::nullopt;
}

WindowsFolders systemFolders()
{
    WindowsFolders folders;
    if (const auto windows = knownFolder(FOLDERID_Windows))
        folders.windows = windows_os::wtf8FromWide(windows->native());
    if (const auto programs = knownFolder(FOLDERID_ProgramFiles))
        folders.programFiles = windows_os::wtf8FromWide(programs->native());
    return folders;
}

}  // namespace kelvane
