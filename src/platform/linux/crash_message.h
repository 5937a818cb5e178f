// What a process and its crash watcher tell each other: each message is one packet of a socket that only they share.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace kelvane::linux_os {

enum class CrashRequest : std::uint32_t {
    dumpFault,  // the sender is the thread that faulted, and waits
    dumpNow,    // the dump's path follows
    setPath,    // the path of dumps of faults follows
};

// The addresses are those of the sender's memory.
struct CrashMessage {
    CrashRequest request = CrashRequest::dumpFault;
    pid_t thread = 0;
    std::uint64_t signalInfo = 0;     // siginfo_t
    std::uint64_t signalContext = 0;  // ucontext_t
    std::uint64_t restart = 0;        // RestartMemory
};

// The answer to each: 0, or an errno value.
using CrashAnswer = std::int32_t;

}  // namespace kelvane::linux_os
