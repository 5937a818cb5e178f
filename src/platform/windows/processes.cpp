#include "platform/processes.h"

#include <mutex>
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>
#include <wininet.h>

#include "platform/windows/adapters.h"
#include "platform/windows/handle.h"
#include "platform/windows/mail.h"
#include "platform/windows/os_error.h"
#include "platform/windows/process_user.h"
#include "platform/windows/quoted_arguments.h"
#include "platform/windows/wide_text.h"

namespace kelvane {
namespace {

using windows_os::composeByMapi;
using windows_os::Handle;
using windows_os::hasAdministratorsRights;
using windows_os::lastError;
using windows_os::quoted;
using windows_os::wideFromWtf8;
using windows_os::wtf8FromWide;

// The shell's functions may hand the work to objects that want COM on the calling thread.
class ComOnThisThread {
public:
    ComOnThisThread() : code_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ComOnThisThread(const ComOnThisThread&) = delete;
    ComOnThisThread& operator=(const ComOnThisThread&) = delete;
    ~ComOnThisThread()
    {
        if (SUCCEEDED(code_))
            ::CoUninitialize();
    }

private:
    HRESULT code_;
};

// The system's texts of such failures leave a place for the name.
Error errorOver(const std::wstring& name)
{
    Error error = lastError();
    if (const auto place = error.detail.find("%1"); place != std::string::npos)
        error.detail.replace(place, 2, wtf8FromWide(name));
    return error;
}

Status shellExecute(const wchar_t* verb, const std::wstring& what, const std::wstring& arguments)
{
    const ComOnThisThread com;
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpVerb = verb;
    info.lpFile = what.c_str();
    info.lpParameters = arguments.empty() ? nullptr : arguments.c_str();
    info.nShow = SW_SHOWNORMAL;
    if (::ShellExecuteExW(&info) == FALSE)
        return errorOver(what);
    return {};
}

bool isPlainLink(const std::string& link)
{
    const bool printable = link.find_first_of(std::string("\0\r\n\t\"", 5)) == std::string::npos;
    return printable && (link.starts_with("https:") || link.starts_with("http:") || link.starts_with("mailto:"));
}

class WindowsProcesses final : public Processes {
public:
    Status start(const std::filesystem::path& program, const std::vector<NativeString>& arguments) override
    {
        std::wstring line = quoted(program.wstring());
        for (const std::wstring& argument : arguments)
            line += L' ' + quoted(argument);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT, nullptr,
                             nullptr, &startup, &process) == FALSE)
            return lastError();
        const Handle ended(process.hProcess), thread(process.hThread);
        return {};
    }

    Status startElevated(const std::filesystem::path& program, const std::vector<NativeString>& arguments) override
    {
        std::wstring line;
        for (const std::wstring& argument : arguments)
            line += (line.empty() ? L"" : L" ") + quoted(argument);
        return shellExecute(L"runas", program.wstring(), line);
    }

    bool isElevated() const override { return hasAdministratorsRights(); }

    Status openFile(const std::filesystem::path& file) override { return shellExecute(nullptr, file.wstring(), {}); }

    Status openLink(const std::string& link) override
    {
        // Anything else could start a program instead.
        if (!isPlainLink(link))
            return Error{ErrorKind::invalid, 0, "this is no link to a page or a mail"};
        return shellExecute(L"open", wideFromWtf8(link), {});
    }

    MailOutcome composeMail(const MailDraft& draft) override { return composeByMapi(draft); }

    bool isOnline() const override
    {
        using Question = BOOL(WINAPI*)(DWORD*, DWORD);
        const HMODULE library = ::LoadLibraryExW(L"wininet.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        const auto ask = library == nullptr ? nullptr
                                            : reinterpret_cast<Question>(reinterpret_cast<void*>(
                                                  ::GetProcAddress(library, "InternetGetConnectedState")));
        DWORD flags = 0;
        return ask == nullptr || ask(&flags, 0) != FALSE;
    }

    void restartAfterCrash(const std::vector<NativeString>& arguments) override
    {
        std::wstring line;
        for (const std::wstring& argument : arguments)
            line += (line.empty() ? L"" : L" ") + quoted(argument);
        ::RegisterApplicationRestart(line.c_str(), RESTART_NO_HANG | RESTART_NO_PATCH | RESTART_NO_REBOOT);
    }
};

}  // namespace

std::unique_ptr<Processes> makeWindowsProcesses()
{
    return std::make_unique<WindowsProcesses>();
}

}  // namespace kelvane
