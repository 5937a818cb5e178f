#include "platform/linux/filter_process.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

constexpr int firstOther = 3;  // behind the standard streams

// Everything that the new process needs, made ready beforehand: between its beginning and the program's it must take
// no memory and no lock, which another thread may have held.
struct FilterStart {
    const char* program;
    char* const* arguments;
    char* const* environment;
    int input, output, messages;
};

// Of default signals, and nothing blocked. SIGKILL and SIGSTOP refuse, which is no harm.
void resetSignals()
{
    struct {
        void* handler;
        unsigned long flags;
        void* restorer;
        std::uint64_t mask;
    } byDefault{};
    for (int signal = 1; signal < NSIG; ++signal)
        ::syscall(SYS_rt_sigaction, signal, &byDefault, nullptr, sizeof(std::uint64_t));
    const std::uint64_t none = 0;
    ::syscall(SYS_rt_sigprocmask, SIG_SETMASK, &none, nullptr, sizeof none);
}

// Raw calls, since a library's wrappers may be the sanitizers', and these take locks.
#if defined(__SANITIZE_THREAD__)
__attribute__((no_sanitize_thread))
#endif
[[noreturn]] void
becomeFilter(const FilterStart& start)
{
    ::syscall(SYS_prctl, PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    // First out of the way of the numbers that they are to have.
    const long input = ::syscall(SYS_fcntl, start.input, F_DUPFD_CLOEXEC, firstOther);
    const long output = ::syscall(SYS_fcntl, start.output, F_DUPFD_CLOEXEC, firstOther);
    const long messages = ::syscall(SYS_fcntl, start.messages, F_DUPFD_CLOEXEC, firstOther);
    if (::syscall(SYS_dup3, input, STDIN_FILENO, 0) < 0 || ::syscall(SYS_dup3, output, STDOUT_FILENO, 0) < 0 ||
        ::syscall(SYS_dup3, messages, STDERR_FILENO, 0) < 0 || ::syscall(SYS_close_range, firstOther, ~0U, 0) < 0)
        ::syscall(SYS_exit_group, FilterProcess::cannotStart);
    resetSignals();
    ::syscall(SYS_execve, start.program, start.arguments, start.environment);
    for (;;)
        ::syscall(SYS_exit_group, FilterProcess::cannotStart);
}

std::vector<char*> pointersTo(std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

Result<FilterProcess> FilterProcess::start(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments, int input, int messages)
{
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        return osError(errno);
    FileHandle ours(pipe[0]);
    const FileHandle theirs(pipe[1]);
    std::vector<std::string> words{program.native()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment{"PATH=/usr/local/bin:/usr/bin:/bin", "LC_ALL=C.UTF-8"};
    const auto wordPointers = pointersTo(words);
    const auto environmentPointers = pointersTo(environment);
    const FilterStart start{program.c_str(), wordPointers.data(), environmentPointers.data(),
                            input,           theirs.get(),        messages};
    int process = -1;
    const long id = ::syscall(SYS_clone, CLONE_PIDFD | SIGCHLD, nullptr, &process, nullptr, nullptr);
    if (id == 0)
        becomeFilter(start);
    if (id < 0)
        return osError(errno);
    return FilterProcess(FileHandle(process), std::move(ours));
}

FilterProcess::~FilterProcess()
{
    kill();
    static_cast<void>(wait());
}

void FilterProcess::kill() const
{
    if (process_.valid())
        ::syscall(SYS_pidfd_send_signal, process_.get(), SIGKILL, nullptr, 0);
}

Result<int> FilterProcess::wait()
{
    siginfo_t end{};
    const int waited = !process_.valid() ? -1 : uninterrupted([&] {
        return ::waitid(P_PIDFD, static_cast<id_t>(process_.get()), &end, WEXITED);
    });
    process_ = FileHandle();
    if (waited != 0)
        return Error{ErrorKind::io, 0, "its end was not seen"};
    return end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status;
}

}  // namespace kelvane::linux_os
