#include "platform/linux/fault_handler.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>

#include "platform/linux/crash_message.h"
#include "platform/linux/crash_restart.h"
#include "platform/linux/crash_watcher.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

constexpr std::array<int, 6> faultSignals = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGTRAP};
constexpr std::size_t handlerStack = 64 * 1024;

// A signal handler is given nothing but the signal, so what it needs has to be where it can find it.
struct HandlerState {
    std::atomic<bool> installed = false;
    std::atomic<int> socket = -1;
    std::atomic<std::int64_t> patience = 0;  // milliseconds
    std::atomic<pid_t> process = 0;
    std::atomic<pid_t> thread = 0;  // the first that faulted; 0: none
    std::atomic<bool> finished = false;
    std::array<struct sigaction, faultSignals.size()> before{};
};

HandlerState& handlerState() noexcept
{
    static constinit HandlerState state;
    return state;
}

pid_t ownThread() noexcept
{
    return static_cast<pid_t>(::syscall(SYS_gettid));
}

void askForDump(const HandlerState& state, const siginfo_t* info, const void* context) noexcept
{
    CrashMessage message;
    message.thread = ownThread();
    message.signalInfo = reinterpret_cast<std::uintptr_t>(info);
    message.signalContext = reinterpret_cast<std::uintptr_t>(context);
    message.restart = reinterpret_cast<std::uintptr_t>(&restartMemory());
    const int socket = state.socket;
    if (::send(socket, &message, sizeof message, MSG_NOSIGNAL | MSG_DONTWAIT) == sizeof message)
        static_cast<void>(receiveAnswer(socket, std::chrono::milliseconds(state.patience)));
}

// Another thread faulted first: its dump shows this one too, and must be finished before this one ends the process.
void waitForOther(const HandlerState& state) noexcept
{
    constexpr int step = 10;  // milliseconds
    for (std::int64_t waited = 0; !state.finished && waited < state.patience; waited += step)
        ::poll(nullptr, 0, step);
}

// A fault of the processor comes again when the handler returns, and finds what was installed before us; a signal that
// was sent does not, nor does a breakpoint.
bool comesAgain(int signal, const siginfo_t* info) noexcept
{
    return info->si_code > 0 && signal != SIGABRT && signal != SIGTRAP;
}

void letItGoOn(const HandlerState& state, int signal, siginfo_t* info) noexcept
{
    for (std::size_t i = 0; i < faultSignals.size(); ++i)
        if (faultSignals[i] == signal)
            ::sigaction(signal, &state.before[i], nullptr);
    if (!comesAgain(signal, info))
        ::syscall(SYS_rt_tgsigqueueinfo, ::getpid(), ownThread(), signal, info);
}

// Only calls that are safe in a signal handler, from here down.
void handleFault(int signal, siginfo_t* info, void* context) noexcept
{
    const int codeBefore = errno;
    HandlerState& state = handlerState();
    pid_t nobody = 0;
    // A child that was forked and runs on without exec is not watched.
    if (state.process == ::getpid()) {
        if (state.thread.compare_exchange_strong(nobody, ownThread())) {
            askForDump(state, info, context);
            state.finished = true;
        } else {
            waitForOther(state);
        }
    }
    letItGoOn(state, signal, info);
    errno = codeBefore;
}

Status installAll(HandlerState& state)
{
    struct sigaction action {};
    action.sa_sigaction = handleFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigfillset(&action.sa_mask);
    for (std::size_t i = 0; i < faultSignals.size(); ++i)
        if (::sigaction(faultSignals[i], &action, &state.before[i]) != 0)
            return osError(errno);
    return {};
}

class HandlerStack {
public:
    HandlerStack()
    {
        stack_t before{};
        if (::sigaltstack(nullptr, &before) != 0 || (before.ss_flags & SS_DISABLE) == 0)
            return;
        memory_ = ::mmap(nullptr, handlerStack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory_ == MAP_FAILED)
            return;
        stack_t own{};
        own.ss_sp = memory_;
        own.ss_size = handlerStack;
        ::sigaltstack(&own, nullptr);
    }
    ~HandlerStack()
    {
        if (memory_ == MAP_FAILED)
            return;
        stack_t none{};
        none.ss_flags = SS_DISABLE;
        ::sigaltstack(&none, nullptr);
        ::munmap(memory_, handlerStack);
    }
    HandlerStack(const HandlerStack&) = delete;
    HandlerStack& operator=(const HandlerStack&) = delete;

private:
    void* memory_ = MAP_FAILED;
};

}  // namespace

Status installFaultHandlers(int socket, std::chrono::milliseconds patience)
{
    HandlerState& state = handlerState();
    state.socket = socket;
    state.patience = patience.count();
    state.process = ::getpid();
    state.thread = 0;
    state.finished = false;
    return state.installed.exchange(true) ? Status() : installAll(state);
}

void removeFaultHandlers()
{
    HandlerState& state = handlerState();
    if (!state.installed.exchange(false))
        return;
    state.process = 0;
    for (std::size_t i = 0; i < faultSignals.size(); ++i)
        ::sigaction(faultSignals[i], &state.before[i], nullptr);
}

void giveThreadHandlerStack()
{
    thread_local const HandlerStack stack;
    static_cast<void>(stack);
}

}  // namespace kelvane::linux_os
