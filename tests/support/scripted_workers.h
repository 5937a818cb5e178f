// Workers that answer as a test says, without any process.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/worker_processes.h"

namespace kelvane::testing {

// The script is asked for each answer; whatever ends a worker ends it here too. Outlives its workers.
class ScriptedWorkers final : public WorkerProcesses {
public:
    using Script = std::function<WorkerAnswer(std::span<const std::byte> request, const WorkerInput& input)>;
    explicit ScriptedWorkers(Script script) : script_(std::move(script)) {}

    Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits, const CancelFlag& cancel) override
    {
        ++starts;
        while (startsNever && !cancel.cancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (cancel.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        lastLimits = limits;
        if (startError)
            return *startError;
        return std::unique_ptr<WorkerProcess>(std::make_unique<Worker>(*this));
    }

    std::optional<Error> startError;
    bool startsNever = false;  // until cancelled
    WorkerConfinement walls{true, true, true, true};
    WorkerLimits lastLimits;
    std::atomic<int> starts = 0, running = 0, mostRunning = 0, asked = 0;

private:
    class Worker final : public WorkerProcess {
    public:
        explicit Worker(ScriptedWorkers& house) : house_(house)
        {
            const int now = ++house_.running;
            int most = house_.mostRunning;
            while (now > most && !house_.mostRunning.compare_exchange_weak(most, now))
                ;
        }
        ~Worker() override { --house_.running; }
        WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input, const CancelFlag&) override
        {
            ++house_.asked;
            WorkerAnswer answer = house_.script_(request, input);
            alive_ = answer.end == WorkerEnd::answered || answer.end == WorkerEnd::notOpened;
            return answer;
        }
        bool alive() const override { return alive_; }
        WorkerConfinement confinement() const override { return house_.walls; }

    private:
        ScriptedWorkers& house_;
        bool alive_ = true;
    };

    Script script_;
};

}  // namespace kelvane::testing
