// Workers that wait for documents, several at a time.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "base/cancel.h"
#include "platform/worker_processes.h"

namespace kelvane {

// Looks whether an answer is one. A worker that gives another one is broken and ends; the answer counts as its death.
using AnswerCheck = std::function<bool(std::span<const std::byte>)>;

// Hands each request to an idle worker, starting one where none is idle and fewer than the most are there; waits
// otherwise. A worker that broke is replaced at the next request. Where one that served before breaks, the request is
// put once more to a fresh one, since what went before may be to blame. Workers are kept until the pool goes.
// Thread-safe.
class WorkerPool {
public:
    // Starts nothing yet. most: at least 1.
    WorkerPool(WorkerProcesses& processes, WorkerLimits limits, unsigned most);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // An error only where no worker can be started.
    [[nodiscard]] Result<WorkerAnswer> ask(std::span<const std::byte> request, const WorkerInput& input,
                                           const CancelFlag& cancel, const AnswerCheck& sensible = {});

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
