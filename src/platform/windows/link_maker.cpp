#include "platform/link_maker.h"

#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

// Lets developers' machines make links without an administrator's rights; older systems do not know the flag.
constexpr DWORD withoutRights = 0x2;

class WindowsLinkMaker final : public LinkMaker {
public:
    Status makeSymbolicLink(const std::filesystem::path& link, const std::filesystem::path& target,
                            bool toFolder) override
    {
        const std::wstring place = windows_os::systemPath(link);
        const DWORD kind = toFolder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
        if (::CreateSymbolicLinkW(place.c_str(), target.c_str(), kind | withoutRights) != FALSE ||
            (::GetLastError() == ERROR_INVALID_PARAMETER &&
             ::CreateSymbolicLinkW(place.c_str(), target.c_str(), kind) != FALSE))
            return {};
        const Error error = windows_os::lastError();
        const bool taken = error.systemCode == ERROR_ALREADY_EXISTS || error.systemCode == ERROR_FILE_EXISTS;
        return taken ? Error{ErrorKind::changed, error.systemCode, error.detail} : error;
    }
};

}  // namespace

std::unique_ptr<LinkMaker> makeWindowsLinkMaker()
{
    return std::make_unique<WindowsLinkMaker>();
}

}  // namespace kelvane
