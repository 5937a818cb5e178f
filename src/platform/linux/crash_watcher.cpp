#include "platform/linux/crash_watcher.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

#include "platform/linux/os_error.h"
#include "platform/linux/watcher_process.h"

namespace kelvane::linux_os {
namespace {

constexpr std::chrono::milliseconds startPatience{5'000};

using SocketPair = std::array<FileHandle, 2>;  // the program's end, the watcher's end

Result<SocketPair> makeSocketPair()
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return osError(errno);
    return SocketPair{FileHandle(ends[0]), FileHandle(ends[1])};
}

// No handler of the program may run in the new process.
class SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_{};
};

// A grandchild belongs to the system once its parent ended: the program never has to wait for it.
Status forkAway(const WatcherEnds& ends, const WatcherOptions& options)
{
    const SignalsBlocked blocked;
    const pid_t child = ::fork();
    if (child == 0) {
        const pid_t grandchild = ::fork();
        if (grandchild == 0)
            runWatcher(ends, options);
        ::_exit(grandchild < 0 ? 1 : 0);
    }
    if (child < 0)
        return osError(errno);
    int status = 0;
    const pid_t waited = uninterrupted([&] { return ::waitpid(child, &status, 0); });
    return waited == child && status != 0 ? Status(osError(EAGAIN)) : Status();
}

std::int64_t millisecondsNow() noexcept
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1'000 + time.tv_nsec / 1'000'000;
}

bool becomesReadable(int socket, std::int64_t deadline) noexcept
{
    for (;;) {
        pollfd event{socket, POLLIN, 0};
        const std::int64_t left = deadline - millisecondsNow();
        const int count = left > 0 ? ::poll(&event, 1, static_cast<int>(left)) : 0;
        if (count >= 0 || errno != EINTR)
            return count > 0;
    }
}

}  // namespace

std::optional<CrashAnswer> receiveAnswer(int socket, std::chrono::milliseconds patience) noexcept
{
    CrashAnswer answer = 0;
    const bool received = becomesReadable(socket, millisecondsNow() + patience.count()) &&
                          ::recv(socket, &answer, sizeof answer, MSG_DONTWAIT) == sizeof answer;
    return received ? std::optional(answer) : std::nullopt;
}

Result<CrashWatcher> CrashWatcher::start(const WatcherOptions& options)
{
    auto faults = makeSocketPair();
    auto commands = makeSocketPair();
    if (!faults.ok() || !commands.ok())
        return faults.ok() ? commands.error() : faults.error();
    // Tells of the program's end even where another process holds the sockets; older kernels do without.
    const FileHandle self(static_cast<int>(::syscall(SYS_pidfd_open, ::getpid(), 0)));
    const WatcherEnds ends{(*faults)[1].get(), (*commands)[1].get(), self.get(), ::getpid()};
    if (auto forked = forkAway(ends, options); !forked.ok())
        return forked.error();
    CrashWatcher watcher;
    watcher.faults_ = std::move((*faults)[0]);
    watcher.commands_ = std::move((*commands)[0]);
    // Its first word is its own number.
    const auto number = receiveAnswer(watcher.commands_.get(), startPatience);
    if (!number)
        return osError(ETIMEDOUT);
    watcher.process_ = *number;
    // Some systems let only parents look into their children, unless a child says otherwise.
    ::prctl(PR_SET_PTRACER, static_cast<unsigned long>(watcher.process_), 0, 0, 0);
    return watcher;
}

std::optional<CrashAnswer> CrashWatcher::ask(CrashRequest request, const std::string& path,
                                             std::chrono::milliseconds patience) const
{
    if (path.size() >= PATH_MAX)
        return ENAMETOOLONG;
    CrashMessage message;
    message.request = request;
    std::vector<char> bytes(sizeof message + path.size());
    std::memcpy(bytes.data(), &message, sizeof message);
    std::memcpy(bytes.data() + sizeof message, path.data(), path.size());
    if (::send(commands_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0)
        return std::nullopt;
    return receiveAnswer(commands_.get(), patience);
}

}  // namespace kelvane::linux_os
