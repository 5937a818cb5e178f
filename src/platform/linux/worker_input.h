// The open file that goes with a request to a worker.
#pragma once

#include "base/result.h"
#include "platform/linux/file_handle.h"
#include "platform/worker_processes.h"

namespace kelvane::linux_os {

// For reading only. Errors as those of opening a file.
[[nodiscard]] Result<FileHandle> openWorkerInput(const WorkerInput& input);

}  // namespace kelvane::linux_os
