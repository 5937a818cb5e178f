// Which system calls a worker and its tools may make.
#pragma once

#include "platform/worker_processes.h"

namespace kelvane::linux_os {

// For all threads of the process and what it starts; what is refused fails with EPERM. Needs no_new_privs. False where
// the kernel has no such filters.
[[nodiscard]] bool refuseDangerousCalls(WorkerReach reach);

}  // namespace kelvane::linux_os
