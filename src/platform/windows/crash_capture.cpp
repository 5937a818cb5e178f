// Crash dumps by the system's own function, which is looked up when it is needed: a program without it still runs.
#include "platform/crash_capture.h"

#include <windows.h>

#include <dbghelp.h>

#include "platform/windows/adapters.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane {
namespace {

using windows_os::Handle;

using DumpFunction = BOOL(WINAPI*)(HANDLE, DWORD, HANDLE, MINIDUMP_TYPE, PMINIDUMP_EXCEPTION_INFORMATION,
                                   PMINIDUMP_USER_STREAM_INFORMATION, PMINIDUMP_CALLBACK_INFORMATION);

DumpFunction findDumpFunction()
{
    const HMODULE library = ::LoadLibraryExW(L"Dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr)
        return nullptr;
    return reinterpret_cast<DumpFunction>(reinterpret_cast<void*>(::GetProcAddress(library, "MiniDumpWriteDump")));
}

// What the filter needs is fixed before anything goes wrong: in a broken process nothing should be allocated or loaded.
// The system calls the filter with nothing but the exception, so this is the one place where it can find them.
struct Prepared {
    DumpFunction writeDump = nullptr;
    wchar_t path[32'768] = {};
};

Prepared& prepared()
{
    static Prepared instance;
    return instance;
}

bool writeDump(DumpFunction function, const wchar_t* path, EXCEPTION_POINTERS* exception)
{
    const HANDLE file =
        ::CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    MINIDUMP_EXCEPTION_INFORMATION information{::GetCurrentThreadId(), exception, FALSE};
    const BOOL written = function(::GetCurrentProcess(), ::GetCurrentProcessId(), file, MiniDumpNormal,
                                  exception != nullptr ? &information : nullptr, nullptr, nullptr);
    ::CloseHandle(file);
    return written != FALSE;
}

LONG WINAPI leaveDump(EXCEPTION_POINTERS* exception)
{
    static_cast<void>(writeDump(prepared().writeDump, prepared().path, exception));
    return EXCEPTION_CONTINUE_SEARCH;
}

class WindowsCrashCapture final : public CrashCapture {
public:
    Status install(const std::filesystem::path& dump) override
    {
        Prepared& kept = prepared();
        const std::wstring path = windows_os::systemPath(dump);
        if (path.size() >= std::size(kept.path))
            return Error{ErrorKind::invalid, 0, "the path of the dump is too long"};
        kept.writeDump = findDumpFunction();
        if (kept.writeDump == nullptr)
            return notAvailable();
        path.copy(kept.path, path.size());
        kept.path[path.size()] = L'\0';
        ::SetUnhandledExceptionFilter(leaveDump);
        return {};
    }

    Status writeNow(const std::filesystem::path& dump) override
    {
        const DumpFunction function = findDumpFunction();
        if (function == nullptr)
            return notAvailable();
        if (!writeDump(function, windows_os::systemPath(dump).c_str(), nullptr))
            return windows_os::lastError();
        return {};
    }

private:
    static Error notAvailable() { return {ErrorKind::notSupported, 0, "this system writes no dumps"}; }
};

}  // namespace

std::unique_ptr<CrashCapture> makeWindowsCrashCapture()
{
    return std::make_unique<WindowsCrashCapture>();
}

}  // namespace kelvane
