// Sound, films and pictures of files on disk and of entries of archives, decoded by workers.
#pragma once

#include <memory>

#include "media/media_reading.h"
#include "platform/shell_namespace.h"
#include "platform/worker_processes.h"

namespace kelvane {

// Ports outlive it. Nothing is ever decoded in this process: where no worker can be started, every answer is
// MediaOutcome::workerMissing. Workers start when the first file is asked for.
[[nodiscard]] std::unique_ptr<MediaReading> makeMediaReading(ShellNamespace& shell, WorkerProcesses& workers,
                                                             MediaOptions options);

}  // namespace kelvane
