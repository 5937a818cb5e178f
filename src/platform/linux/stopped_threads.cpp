#include "platform/linux/stopped_threads.h"

#include <sys/ptrace.h>
#include <sys/wait.h>

#include <optional>
#include <thread>

namespace kelvane::linux_os {
namespace {

using Clock = std::chrono::steady_clock;

bool takeHold(pid_t id)
{
    return ::ptrace(PTRACE_SEIZE, id, nullptr, nullptr) == 0 && ::ptrace(PTRACE_INTERRUPT, id, nullptr, nullptr) == 0;
}

// Asks in small steps, since waiting for one thread cannot be bounded otherwise.
bool standsStill(pid_t id, Clock::time_point deadline)
{
    for (;;) {
        int status = 0;
        const pid_t answer = ::waitpid(id, &status, __WALL | WNOHANG);
        if (answer != 0)
            return answer == id && WIFSTOPPED(status);
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::optional<DumpedThread> readRegisters(pid_t id)
{
    DumpedThread thread;
    thread.id = id;
    const bool read = ::ptrace(PTRACE_GETREGS, id, nullptr, &thread.registers) == 0 &&
                      ::ptrace(PTRACE_GETFPREGS, id, nullptr, &thread.floating) == 0;
    return read ? std::optional(thread) : std::nullopt;
}

}  // namespace

std::vector<DumpedThread> stopThreads(const std::vector<pid_t>& ids, std::chrono::milliseconds patience)
{
    std::vector<pid_t> held;
    for (const pid_t id : ids)
        if (takeHold(id))
            held.push_back(id);
    std::vector<DumpedThread> threads;
    const auto deadline = Clock::now() + patience;
    for (const pid_t id : held) {
        if (!standsStill(id, deadline))
            continue;
        if (const auto thread = readRegisters(id))
            threads.push_back(*thread);
    }
    return threads;
}

}  // namespace kelvane::linux_os
