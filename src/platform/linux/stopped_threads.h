// Halts the threads of another process and reads their registers.
#pragma once

#include <chrono>
#include <vector>

#include "platform/linux/minidump_content.h"

namespace kelvane::linux_os {

// Takes hold of the threads as a debugger does, and waits at most `patience` until they stand still. Gives those that
// do, in the order of `ids`, without their stacks; a thread that waits inside the kernel for a device is left out. The
// caller must be single-threaded, and lets go of all by ending: only that also frees threads that never stopped.
[[nodiscard]] std::vector<DumpedThread> stopThreads(const std::vector<pid_t>& ids, std::chrono::milliseconds patience);

}  // namespace kelvane::linux_os
