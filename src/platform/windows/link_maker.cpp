#include "platform/link_maker.h"

#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

// Lets a person in developer mode make links without an administrator's rights; known since Windows 10 1703.
constexpr DWORD allowUnprivileged = 0x2;

class WindowsLinkMaker final : public LinkMaker {
public:
    Status makeSymbolicLink(const std::filesystem::path& link, const std::filesystem::path& target,
                            bool toFolder) override
    {
        const DWORD kind = toFolder ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
        const std::wstring name = windows_os::systemPath(link);
        if (make(name, target, kind | allowUnprivileged))
            return {};
        // Older systems refuse a flag that they do not know.
        if (::GetLastError() == ERROR_INVALID_PARAMETER && make(name, target, kind))
            return {};
        return windows_os::lastError();
    }

private:
    static bool make(const std::wstring& link, const std::filesystem::path& target, DWORD flags)
    {
        return ::CreateSymbolicLinkW(link.c_str(), target.c_str(), flags) != 0;
    }
};

}  // namespace

std::unique_ptr<LinkMaker> makeWindowsLinkMaker()
{
    return std::make_unique<WindowsLinkMaker>();
}

}  // namespace kelvane
