// The walls that a worker raises around itself before it looks at anything.
#pragma once

#include "platform/worker_processes.h"

namespace kelvane::linux_os {

// Closes what was inherited beyond the standard streams and the socket, and binds this process's life to the program's.
void leaveTheProgramBehind(WorkerProgram program);

// Limits memory, and gives up whatever the kernel lets a process give up. What this kernel lacks is left out, and told.
[[nodiscard]] WorkerConfinement confineWorker(const WorkerLimits& limits);

}  // namespace kelvane::linux_os
