// The kernel's own wall around files (Landlock, Linux 5.13): once it stands, nothing in the process takes it down.
#pragma once

#include "platform/worker_processes.h"

namespace kelvane::linux_os {

struct LandlockWalls {
    bool files = false;
    bool signals = false;
};

// For the calling thread and what it starts: files are read and programs started within reach only (a worker that
// starts no tools: none at all), nothing is written anywhere. Needs no_new_privs. Tells what this kernel has of it.
[[nodiscard]] LandlockWalls raiseLandlock(const WorkerLimits& limits);

}  // namespace kelvane::linux_os
