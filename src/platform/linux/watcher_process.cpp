#include "platform/linux/watcher_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/linux/crash_restart.h"
#include "platform/linux/dump_file.h"
#include "platform/linux/minidump_writer.h"
#include "platform/linux/process_reader.h"
#include "platform/linux/process_snapshot.h"

namespace kelvane::linux_os {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned longestWriting = 5;                      // seconds
constexpr std::chrono::milliseconds longestEnding{30'000};  // a core file may be on its way to the disk
constexpr std::chrono::minutes longestDying{1};             // a program that ends later has survived its fault

void resetSignals()
{
    for (int signal = 1; signal < NSIG; ++signal)
        ::signal(signal, SIG_DFL);
}

void ignoreEndings()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        ::signal(signal, SIG_IGN);
}

void unblockSignals()
{
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Moves what is needed to the front and closes everything else: whoever waits for the program to close a pipe, a file
// or a lock must not wait for the watcher.
WatcherEnds keepOnly(const WatcherEnds& ends)
{
    constexpr int faults = 3;
    constexpr int commands = 4;
    constexpr int program = 5;
    constexpr int aside = 16;
    const int from[] = {::open("/dev/null", O_RDWR), ends.faults, ends.commands, ends.program};
    int kept[4];
    for (int i = 0; i < 4; ++i)
        kept[i] = ::fcntl(from[i], F_DUPFD_CLOEXEC, aside);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(kept[0], standard);
    ::dup3(kept[1], faults, O_CLOEXEC);
    ::dup3(kept[2], commands, O_CLOEXEC);
    const bool hasProgram = ::dup3(kept[3], program, O_CLOEXEC) == program;
    ::syscall(SYS_close_range, hasProgram ? program + 1 : program, ~0U, 0);
    return {faults, commands, hasProgram ? program : -1, ends.programId};
}

// Runs in a process of its own, so that whatever it trips over in a broken program harms nothing else, and that its end
// frees every thread.
[[noreturn]] void writeDumpAndExit(pid_t program, const std::string& path, const std::optional<CrashMessage>& fault)
{
    ::alarm(longestWriting);
    const auto process = snapshotOf(program, fault);
    if (!process.ok())
        ::_exit(process.error().systemCode);
    const auto written = writeDumpFile(path, minidumpOf(*process).bytes());
    ::_exit(written.ok() ? 0 : written.error().systemCode);
}

CrashAnswer writeDump(pid_t program, const std::string& path, const std::optional<CrashMessage>& fault)
{
    const pid_t writer = ::fork();
    if (writer == 0)
        writeDumpAndExit(program, path, fault);
    if (writer < 0)
        return errno;
    int status = 0;
    if (uninterrupted([&] { return ::waitpid(writer, &status, 0); }) != writer)
        return errno;
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    return WTERMSIG(status) == SIGALRM ? ETIMEDOUT : EIO;
}

class Watcher {
public:
    Watcher(const WatcherEnds& ends, const WatcherOptions& options)
        : ends_(ends), options_(options), started_(Clock::now())
    {
    }

    [[noreturn]] void run()
    {
        answer(ends_.commands, ::getpid());
        while (serveOne())
            ;
        if (wish_.wanted && faulted_ - started_ >= options_.leastLife && Clock::now() - faulted_ < longestDying)
            startAgain();
        ::_exit(0);
    }

private:
    // False when the program is gone.
    bool serveOne()
    {
        std::array<pollfd, 3> events = {
            {{ends_.faults, POLLIN, 0}, {ends_.commands, POLLIN, 0}, {ends_.program, POLLIN, 0}}};
        if (::poll(events.data(), events.size(), -1) < 0)
            return errno == EINTR;
        for (const pollfd& event : {events[0], events[1]})
            if (event.revents != 0)
                return serve(event.fd);
        return events[2].revents == 0;
    }

    bool serve(int socket)
    {
        std::array<char, sizeof(CrashMessage) + PATH_MAX> packet;
        const ssize_t size = uninterrupted([&] { return ::recv(socket, packet.data(), packet.size(), 0); });
        if (size <= 0)
            return false;
        CrashMessage message;
        if (static_cast<std::size_t>(size) < sizeof message)
            return true;
        std::memcpy(&message, packet.data(), sizeof message);
        const std::string path(packet.data() + sizeof message, static_cast<std::size_t>(size) - sizeof message);
        answer(socket, carryOut(message, path));
        return true;
    }

    CrashAnswer carryOut(const CrashMessage& message, const std::string& path)
    {
        switch (message.request) {
        case CrashRequest::dumpFault:
            noteFault(message);
            return writeDump(ends_.programId, options_.dump, message);
        case CrashRequest::dumpNow:
            return writeDump(ends_.programId, path, std::nullopt);
        case CrashRequest::setPath:
            options_.dump = path;
            return 0;
        }
        return EINVAL;
    }

    void noteFault(const CrashMessage& message)
    {
        faulted_ = Clock::now();
        const auto memory = ProcessReader(ends_.programId).object<RestartMemory>(message.restart);
        wish_ = memory ? restartWish(*memory) : RestartWish{};
    }

    static void answer(int socket, CrashAnswer code) { ::send(socket, &code, sizeof code, MSG_NOSIGNAL); }

    // The new one must not meet the old one, which would take its command line and die.
    void startAgain()
    {
        pollfd event{ends_.program, POLLIN, 0};
        if (ends_.program >= 0 && ::poll(&event, 1, static_cast<int>(longestEnding.count())) <= 0)
            return;
        std::vector<char*> arguments = {options_.program.data()};
        for (std::string& argument : wish_.arguments)
            arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        resetSignals();
        ::execv(options_.program.c_str(), arguments.data());
    }

    WatcherEnds ends_;
    WatcherOptions options_;
    Clock::time_point started_;
    Clock::time_point faulted_;
    RestartWish wish_;
};

}  // namespace

void runWatcher(const WatcherEnds& ends, const WatcherOptions& options)
{
    ::setsid();
    resetSignals();
    ignoreEndings();
    unblockSignals();
    ::prctl(PR_SET_NAME, "kelvane-watcher", 0, 0, 0);
    Watcher(keepOnly(ends), options).run();
}

}  // namespace kelvane::linux_os
