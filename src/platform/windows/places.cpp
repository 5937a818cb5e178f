#include <windows.h>

#include <shlobj.h>

#include "platform/windows/adapters.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

using std::filesystem::path;

constexpr std::size_t longestPath = 32 * 1024;  // of any path in units, with its end

class WindowsPlaces final : public Places {
public:
    path temporaryFolder() const override
    {
        std::wstring text(MAX_PATH + 2, L'\0');
        const DWORD length = ::GetTempPathW(static_cast<DWORD>(text.size()), text.data());
        if (length == 0 || length >= text.size())
            return LR"(C:\Windows\Temp)";
        text.resize(length);
        while (text.size() > 3 && text.back() == L'\\')
            text.pop_back();
        return text;
    }

    path settingsFolder() const override
    {
        const auto folder = knownFolder(FOLDERID_RoamingAppData);
        return folder ? *folder : temporaryFolder();
    }

    path stateFolder() const override
    {
        const auto folder = knownFolder(FOLDERID_LocalAppData);
        return folder ? *folder : settingsFolder();
    }

    // Programs keep both below the same folder there.
    path cacheFolder() const override { return stateFolder(); }

    path programFile() const override
    {
        std::wstring text(longestPath, L'\0');
        text.resize(::GetModuleFileNameW(nullptr, text.data(), longestPath));
        return windows_os::finalPath(text).value_or(path(text));
    }
};

}  // namespace

std::unique_ptr<Places> makeWindowsPlaces()
{
    return std::make_unique<WindowsPlaces>();
}

}  // namespace kelvane
