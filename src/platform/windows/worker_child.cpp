#include "platform/windows/worker_child.h"

#include <sddl.h>

#include "platform/windows/os_error.h"
#include "platform/windows/quoted_arguments.h"
#include "platform/windows/wide_text.h"

namespace kelvane::windows_os {
namespace {

constexpr wchar_t lowIntegrity[] = L"S-1-16-4096";
constexpr DWORD endedByUs = 1;

Result<Handle> makeJob(const WorkerLimits& limits)
{
    Handle job(::CreateJobObjectW(nullptr, nullptr));
    if (!job.valid())
        return lastError();
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION info{};
    info.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_ACTIVE_PROCESS |
                                            JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    info.BasicLimitInformation.ActiveProcessLimit = 1;
    if (limits.memoryBytes != 0) {
        info.BasicLimitInformation.LimitFlags |= JOB_OBJECT_LIMIT_PROCESS_MEMORY;
        info.ProcessMemoryLimit = static_cast<SIZE_T>(limits.memoryBytes);
    }
    if (::SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &info, sizeof info) == FALSE)
        return lastError();
    JOBOBJECT_BASIC_UI_RESTRICTIONS screen{JOB_OBJECT_UILIMIT_HANDLES | JOB_OBJECT_UILIMIT_READCLIPBOARD |
                                           JOB_OBJECT_UILIMIT_WRITECLIPBOARD | JOB_OBJECT_UILIMIT_EXITWINDOWS |
                                           JOB_OBJECT_UILIMIT_SYSTEMPARAMETERS | JOB_OBJECT_UILIMIT_GLOBALATOMS};
    ::SetInformationJobObject(job.get(), JobObjectBasicUIRestrictions, &screen, sizeof screen);  // one wall more
    return job;
}

bool lowerIntegrity(HANDLE token)
{
    PSID level = nullptr;
    if (::ConvertStringSidToSidW(lowIntegrity, &level) == FALSE)
        return false;
    TOKEN_MANDATORY_LABEL label{{level, SE_GROUP_INTEGRITY}};
    const bool done =
        ::SetTokenInformation(token, TokenIntegrityLevel, &label, sizeof label + ::GetLengthSid(level)) != FALSE;
    ::LocalFree(level);
    return done;
}

// This program's own rights without its privileges; an invalid handle where the system does not give one.
Handle weakToken()
{
    HANDLE own = nullptr, weak = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(),
                           TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY | TOKEN_QUERY | TOKEN_ADJUST_DEFAULT, &own) == FALSE)
        return {};
    const Handle mine(own);
    if (::CreateRestrictedToken(own, DISABLE_MAX_PRIVILEGE, 0, nullptr, 0, nullptr, 0, nullptr, &weak) == FALSE)
        return {};
    Handle token(weak);
    return lowerIntegrity(weak) ? std::move(token) : Handle();
}

// The one handle that the child inherits.
class InheritedHandle {
public:
    explicit InheritedHandle(HANDLE handle) : handle_(handle)
    {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        room_.resize(size);
        made_ = ::InitializeProcThreadAttributeList(list(), 1, 0, &size) != FALSE;
        usable_ = made_ && ::UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, &handle_,
                                                       sizeof handle_, nullptr, nullptr) != FALSE;
    }
    InheritedHandle(const InheritedHandle&) = delete;
    InheritedHandle& operator=(const InheritedHandle&) = delete;
    ~InheritedHandle()
    {
        if (made_)
            ::DeleteProcThreadAttributeList(list());
    }

    [[nodiscard]] bool usable() const { return usable_; }
    [[nodiscard]] LPPROC_THREAD_ATTRIBUTE_LIST list()
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room_.data());
    }

private:
    HANDLE handle_;
    std::vector<std::byte> room_;
    bool made_ = false, usable_ = false;
};

std::wstring commandLine(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const Handle& pipe)
{
    std::wstring line = quoted(program.native());
    for (const std::string& argument : arguments)
        line += L' ' + quoted(wideFromWtf8(argument));
    return line + L' ' + std::to_wstring(reinterpret_cast<std::uintptr_t>(pipe.get()));
}

constexpr DWORD startFlags =
    CREATE_SUSPENDED | CREATE_NO_WINDOW | CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT;

// Suspended, so that it is in its job before it does anything.
Result<PROCESS_INFORMATION> startSuspended(const std::filesystem::path& program, const std::wstring& line,
                                           const Handle& pipe)
{
    InheritedHandle inherited(pipe.get());
    if (!inherited.usable())
        return lastError();
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = inherited.list();
    PROCESS_INFORMATION process{};
    std::wstring room = line;
    const Handle token = weakToken();
    if (token.valid() && ::CreateProcessAsUserW(token.get(), program.c_str(), room.data(), nullptr, nullptr, TRUE,
                                                startFlags, nullptr, nullptr, &startup.StartupInfo, &process) != FALSE)
        return process;
    room = line;
    if (::CreateProcessW(program.c_str(), room.data(), nullptr, nullptr, TRUE, startFlags, nullptr, nullptr,
                         &startup.StartupInfo, &process) == FALSE)
        return lastError();
    return process;
}

}  // namespace

Result<WorkerChild> WorkerChild::start(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                                       const Handle& pipe, const WorkerLimits& limits)
{
    auto job = makeJob(limits);
    if (!job)
        return job.error();
    const auto started = startSuspended(program, commandLine(program, arguments, pipe), pipe);
    if (!started)
        return started.error();
    const Handle thread(started->hThread);
    WorkerChild child(std::move(*job), Handle(started->hProcess));
    if (::AssignProcessToJobObject(child.job_.get(), started->hProcess) == FALSE ||
        ::ResumeThread(started->hThread) == static_cast<DWORD>(-1))
        return lastError();
    return child;
}

Result<std::uint64_t> WorkerChild::give(const Handle& file) const
{
    HANDLE theirs = nullptr;
    if (::DuplicateHandle(::GetCurrentProcess(), file.get(), process_.get(), &theirs, FILE_GENERIC_READ, FALSE, 0) ==
        FALSE)
        return lastError();
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(theirs));
}

std::optional<unsigned long> WorkerChild::endWithin(std::chrono::milliseconds patience) const
{
    DWORD code = 0;
    if (::WaitForSingleObject(process_.get(), static_cast<DWORD>(patience.count())) != WAIT_OBJECT_0 ||
        ::GetExitCodeProcess(process_.get(), &code) == FALSE)
        return std::nullopt;
    return code;
}

void WorkerChild::end()
{
    if (!process_.valid())
        return;
    ::TerminateJobObject(job_.get(), endedByUs);
    ::TerminateProcess(process_.get(), endedByUs);  // one that never got into its job
    ::WaitForSingleObject(process_.get(), INFINITE);
}

}  // namespace kelvane::windows_os
