#include <bit>
#include <windows.h>

#include "platform/windows/adapters.h"
#include "platform/windows/registry_value.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::registryNumber;
using windows_os::registryText;

constexpr UINT usualDpi = 96;
constexpr const wchar_t* versionKey = LR"(SOFTWARE\Microsoft\Windows NT\CurrentVersion)";

// A function that older systems lack; null there.
template <class Function>
Function functionOf(const wchar_t* library, const char* name)
{
    const HMODULE module = ::GetModuleHandleW(library);
    return module ? std::bit_cast<Function>(::GetProcAddress(module, name)) : nullptr;
}

class WindowsSystemFacts final : public SystemFacts {
public:
    // The plain question is answered with what the program's manifest names, this one with the truth.
    SystemVersion version() const override
    {
        SystemVersion version;
        version.leastMajor = 6;  // Vista
        OSVERSIONINFOW info{};
        info.dwOSVersionInfoSize = sizeof info;
        using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
        if (const auto ask = functionOf<RtlGetVersion>(L"ntdll.dll", "RtlGetVersion"); ask && ask(&info) == 0) {
            version.major = info.dwMajorVersion;
            version.minor = info.dwMinorVersion;
            version.build = info.dwBuildNumber;
            version.isNt = info.dwPlatformId == VER_PLATFORM_WIN32_NT;
        }
        version.revision = registryNumber(HKEY_LOCAL_MACHINE, versionKey, L"UBR").value_or(0);
        version.productName =
            windows_os::fromWide(registryText(HKEY_LOCAL_MACHINE, versionKey, L"ProductName").value_or(L""));
        return version;
    }

    bool usesDoubleByteCharacters() const override { return ::GetSystemMetrics(SM_DBCSENABLED) != 0; }

    bool longPathsEnabled() const override
    {
        constexpr const wchar_t* key = LR"(SYSTEM\CurrentControlSet\Control\FileSystem)";
        return registryNumber(HKEY_LOCAL_MACHINE, key, L"LongPathsEnabled").value_or(0) != 0;
    }

    std::uint32_t screenDpi() const override
    {
        using GetDpiForSystem = UINT(WINAPI*)();
        const auto ask = functionOf<GetDpiForSystem>(L"user32.dll", "GetDpiForSystem");
        const UINT dpi = ask ? ask() : 0;
        return dpi != 0 ? dpi : usualDpi;
    }

    std::optional<std::uint32_t> thumbnailSize() const override
    {
        constexpr const wchar_t* key = LR"(Software\Microsoft\Windows\CurrentVersion\Explorer)";
        return registryNumber(HKEY_CURRENT_USER, key, L"ThumbnailSize");
    }

    std::optional<std::filesystem::path> installedProgram(const std::string& name) const override
    {
        if (name.empty() || name.find('\\') != std::string::npos)
            return std::nullopt;
        const std::wstring key =
            LR"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\)" + windows_os::wideFromWtf8(name);
        const auto found = registryText(HKEY_LOCAL_MACHINE, key.c_str(), nullptr);
        return found && !found->empty() ? std::optional<std::filesystem::path>(*found) : std::nullopt;
    }
};

}  // namespace

std::unique_ptr<SystemFacts> makeWindowsSystemFacts()
{
    return std::make_unique<WindowsSystemFacts>();
}

}  // namespace kelvane
