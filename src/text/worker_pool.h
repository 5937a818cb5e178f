// Workers that wait for documents, several at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/cancel.h"
#include "platform/worker_processes.h"

namespace kelvane {

// Looks whether an answer is one. A worker that gives another one is broken and ends; the answer counts as its death.
using AnswerCheck = std::function<bool(std::span<const std::byte>)>;

// What it means that no worker can be started.
enum class StartFault : std::uint8_t {
    passing,  // the system is short of something
    broken,   // the program is there and does not start
    missing,  // it is not installed, or this system has none
};
[[nodiscard]] StartFault startFaultOf(const Error& error);

// By the number of processors, where `asked` is 0.
[[nodiscard]] unsigned workersAtOnce(unsigned asked);

// Hands each request to an idle worker, starting one where none is idle and fewer than the most are there; waits
// otherwise. A worker that broke is replaced at the next request. Where one that served before breaks, the request is
// put once more to a fresh one, since what went before may be to blame. Workers are kept until the pool goes.
// A program that is missing, or fails to start three times in a row, is not started again. Thread-safe.
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
    // What a person should know of the workers that were started so far, in UTF-8: walls that this system lacks. Empty
    // where nothing is to be told.
    [[nodiscard]] std::string warning() const;

private:
    class Loan;
    [[nodiscard]] Result<std::unique_ptr<WorkerProcess>> start(const CancelFlag& cancel);
    void noteStart(const Result<std::unique_ptr<WorkerProcess>>& started);

    WorkerProcesses& processes_;
    const WorkerLimits limits_;
    const unsigned most_;
    mutable std::mutex mutex_;
    std::condition_variable returned_;
    std::vector<std::unique_ptr<WorkerProcess>> idle_;
    unsigned lent_ = 0;
    unsigned failedStarts_ = 0;  // in a row
    Error lastFailure_;
    std::optional<WorkerConfinement> walls_;
};

}  // namespace kelvane
