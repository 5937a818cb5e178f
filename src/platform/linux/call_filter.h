// Which system calls a worker and its tools may make.
#pragma once

#include "platform/worker_processes.h"

namespace kelvane::linux_os {

// For all threads of the process and what it starts; what is refused fails with EPERM. A worker that starts no tools
// gets no further process, and no memory that it could fill with code and run. Needs no_new_privs. False where the
// kernel has no such filters.
[[nodiscard]] bool refuseDangerousCalls(const WorkerLimits& limits);

}  // namespace kelvane::linux_os
