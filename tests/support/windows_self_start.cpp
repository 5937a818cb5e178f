#include "support/windows_self_start.h"

#include <stdexcept>

#include "platform/windows/handle.h"

namespace kelvane::testing {

DWORD startSelf(const std::wstring& arguments, const wchar_t* variable, const std::wstring& value)
{
    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring(program) + L"\" " + arguments;
    ::SetEnvironmentVariableW(variable, value.c_str());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const BOOL started =
        ::CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    ::SetEnvironmentVariableW(variable, nullptr);
    if (started == FALSE)
        throw std::runtime_error("this program could not be started again");
    const windows_os::Handle child(process.hProcess), thread(process.hThread);
    ::WaitForSingleObject(child.get(), 60'000);
    DWORD code = 0;
    ::GetExitCodeProcess(child.get(), &code);
    return code;
}

}  // namespace kelvane::testing
