// Content plug-ins that run in workers: one that breaks down or hangs costs the value that it was asked for.
#pragma once

#include <memory>

#include "text/plugin_access.h"
#include "text/worker_pool.h"

namespace kelvane {

// As many at once as `most`; each worker loads the plug-ins that it is asked about. The processes outlive it.
[[nodiscard]] std::unique_ptr<PluginAccess> makeWorkerPlugins(WorkerProcesses& processes, WorkerLimits limits,
                                                              unsigned most);

}  // namespace kelvane
