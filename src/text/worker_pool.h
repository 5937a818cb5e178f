// Workers that wait for documents, several at a time.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "base/cancel.h"
#include "platform/worker_processes.h"

namespace kelvane {

// Hands each request to an idle worker, starting one where none is idle and fewer than the most are there; waits
// otherwise. A worker that broke is replaced at the next request. Workers are kept until the pool goes. Thread-safe.
class WorkerPool {
public:
    // Starts nothing yet. most: at least 1.
    WorkerPool(WorkerProcesses& processes, WorkerLimits limits, unsigned most);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // An error only where no worker can be started.
    [[nodiscard]] Result<WorkerAnswer> ask(std::span<const std::byte> request, const WorkerInput& input,
                                           const CancelFlag& cancel);

private:
    class Loan;
    WorkerProcesses& processes_;
    const WorkerLimits limits_;
    const unsigned most_;
    std::mutex mutex_;
    std::condition_variable returned_;
    std::vector<std::unique_ptr<WorkerProcess>> idle_;
    unsigned lent_ = 0;
};

}  // namespace kelvane
