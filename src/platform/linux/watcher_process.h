// What the crash watcher does, inside its own process.
#pragma once

#include "platform/linux/crash_watcher.h"

namespace kelvane::linux_os {

// Open files as the watcher inherits them.
struct WatcherEnds {
    int faults = -1;
    int commands = -1;
    int program = -1;  // a pidfd; may be missing
    pid_t programId = 0;
};

// Never returns: serves requests until the program is gone, and then starts it again if it crashed and wants that.
[[noreturn]] void runWatcher(const WatcherEnds& ends, const WatcherOptions& options);

}  // namespace kelvane::linux_os
