#include "text/worker_pool.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "base/filled_text.h"
#include "platform/worker_frames.h"

namespace kelvane {
namespace {

// At the cancel flag, while all workers are busy.
constexpr std::chrono::milliseconds betweenLooks{20};

// So many starts in a row that go wrong are no accident any more.
constexpr unsigned mostFailedStarts = 3;

struct WallName {
    bool WorkerConfinement::*wall;
    TextId words;
};
constexpr WallName wallNames[] = {{&WorkerConfinement::files, TextId::wallAroundFiles},
                                  {&WorkerConfinement::calls, TextId::wallAroundCalls},
                                  {&WorkerConfinement::signals, TextId::wallAroundSignals},
                                  {&WorkerConfinement::memory, TextId::wallAroundMemory}};

WorkerConfinement common(const WorkerConfinement& a, const WorkerConfinement& b)
{
    return {a.files && b.files, a.calls && b.calls, a.signals && b.signals, a.memory && b.memory};
}

}  // namespace

StartFault startFaultOf(const Error& error)
{
    switch (error.kind) {
    case ErrorKind::tooManyOpen:
    case ErrorKind::io:
    case ErrorKind::cancelled:
        return StartFault::passing;
    case ErrorKind::invalid:
        return StartFault::broken;
    default:
        return StartFault::missing;
    }
}

unsigned workersAtOnce(unsigned asked)
{
    constexpr unsigned most = 8;
    return asked != 0 ? asked : std::clamp(std::thread::hardware_concurrency(), 1u, most);
}

// The right to one worker, given back by the destructor with the worker, if it still lives.
class WorkerPool::Loan {
public:
    // Waits for its turn; has no right when it was cancelled meanwhile.
    Loan(WorkerPool& pool, const CancelFlag& cancel) : pool_(pool)
    {
        std::unique_lock lock(pool_.mutex_);
        while (pool_.lent_ >= pool_.most_ && !cancel.cancelled())
            pool_.returned_.wait_for(lock, betweenLooks);
        granted_ = pool_.lent_ < pool_.most_;
        if (!granted_)
            return;
        ++pool_.lent_;
        if (!pool_.idle_.empty()) {
            worker_ = std::move(pool_.idle_.back());
            pool_.idle_.pop_back();
        }
    }
    ~Loan()
    {
        if (!granted_)
            return;
        const bool lives = worker_ && worker_->alive();
        if (!lives)
            worker_.reset();  // which waits for its end: nobody should wait along
        const std::lock_guard lock(pool_.mutex_);
        --pool_.lent_;
        if (lives)
            pool_.idle_.push_back(std::move(worker_));
        pool_.returned_.notify_one();
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    [[nodiscard]] bool granted() const { return granted_; }
    // Whether the worker has served before.
    [[nodiscard]] bool used() const { return worker_ && worker_->alive(); }
    // Only for who has the right.
    [[nodiscard]] Status startAfresh(const CancelFlag& cancel)
    {
        worker_.reset();
        auto started = pool_.start(cancel);
        if (!started)
            return started.error();
        worker_ = std::move(*started);
        return {};
    }
    [[nodiscard]] WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input,
                                   const CancelFlag& cancel, const AnswerCheck& sensible)
    {
        WorkerAnswer answer = worker_->ask(request, input, cancel);
        if (answer.end != WorkerEnd::answered || !sensible || sensible(answer.message))
            return answer;
        worker_.reset();
        return {WorkerEnd::died, {}, {ErrorKind::invalid, 0, "it gave no sensible answer"}};
    }

private:
    WorkerPool& pool_;
    std::unique_ptr<WorkerProcess> worker_;
    bool granted_ = false;
};

WorkerPool::WorkerPool(WorkerProcesses& processes, WorkerLimits limits, unsigned most)
    : processes_(processes), limits_(limits), most_(most)
{
}

WorkerPool::~WorkerPool() = default;

Result<std::unique_ptr<WorkerProcess>> WorkerPool::start(const CancelFlag& cancel)
{
    {
        const std::lock_guard lock(mutex_);
        if (failedStarts_ >= mostFailedStarts)
            return lastFailure_;
    }
    auto started = processes_.start(limits_, cancel);
    noteStart(started);
    return started;
}

void WorkerPool::noteStart(const Result<std::unique_ptr<WorkerProcess>>& started)
{
    const std::lock_guard lock(mutex_);
    if (started) {
        failedStarts_ = 0;
        walls_ = common(walls_.value_or((*started)->confinement()), (*started)->confinement());
        return;
    }
    const StartFault fault = startFaultOf(started.error());
    if (fault == StartFault::passing)
        return;
    failedStarts_ = fault == StartFault::missing ? mostFailedStarts : failedStarts_ + 1;
    lastFailure_ = started.error();
}

std::string WorkerPool::warning() const
{
    const std::lock_guard lock(mutex_);
    if (!walls_)
        return {};
    const WorkerConfinement known = processes_.known();
    std::string missing;
    for (const auto& [wall, words] : wallNames)
        if (known.*wall && !(*walls_.*wall))
            missing += (missing.empty() ? "" : ", ") + filledText(words);
    if (missing.empty())
        return {};
    return filledText(TextId::workerWallsMissing, {std::string(workerProgramName(limits_.program)), missing});
}

Result<WorkerAnswer> WorkerPool::ask(std::span<const std::byte> request, const WorkerInput& input,
                                     const CancelFlag& cancel, const AnswerCheck& sensible)
{
    Loan loan(*this, cancel);
    if (!loan.granted() || cancel.cancelled())
        return WorkerAnswer{WorkerEnd::cancelled, {}, {}};
    if (loan.used()) {
        WorkerAnswer answer = loan.ask(request, input, cancel, sensible);
        if (answer.end != WorkerEnd::died && answer.end != WorkerEnd::tooMuchMemory)
            return answer;
        // What earlier documents left behind in it may be to blame: a fresh worker decides.
    }
    if (Status started = loan.startAfresh(cancel); !started)
        return cancel.cancelled() ? WorkerAnswer{WorkerEnd::cancelled, {}, {}} : Result<WorkerAnswer>(started.error());
    return loan.ask(request, input, cancel, sensible);
}

}  // namespace kelvane
