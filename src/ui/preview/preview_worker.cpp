#include "ui/preview/preview_worker.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace kelvane {

struct PreviewWorker::State {
    explicit State(const Desktop& its) : desktop(its) {}

    void run();
    [[nodiscard]] Work next(std::unique_ptr<PreviewTools>& tools);
    void drop()
    {
        waiting.clear();
        cancel.cancel();
    }

    const Desktop& desktop;
    CancelFlag cancel;  // of the work that is being done
    std::mutex mutex;
    std::condition_variable posted;
    std::deque<Work> waiting;
    bool ending = false;
    bool toolsAreOld = false;
};

// Whoever cancels holds the lock, so that no work begins with the flag of the one before.
PreviewWorker::Work PreviewWorker::State::next(std::unique_ptr<PreviewTools>& tools)
{
    std::unique_lock lock(mutex);
    posted.wait(lock, [this] { return ending || !waiting.empty(); });
    if (ending)
        return nullptr;
    Work work = std::move(waiting.front());
    waiting.pop_front();
    cancel.reset();
    const bool renew = std::exchange(toolsAreOld, false);
    lock.unlock();
    if (renew)
        tools.reset();
    if (!tools)
        tools = std::make_unique<PreviewTools>(desktop, cancel);
    return work;
}

void PreviewWorker::State::run()
{
    std::unique_ptr<PreviewTools> tools;
    while (const Work work = next(tools))
        work(*tools);
}

PreviewWorker::PreviewWorker(Desktop& desktop) : desktop_(desktop), state_(std::make_shared<State>(desktop)) {}

PreviewWorker::~PreviewWorker()
{
    {
        const std::lock_guard lock(state_->mutex);
        state_->ending = true;
        state_->drop();
    }
    state_->posted.notify_one();
    if (thread_.valid())
        desktop_.letFinish(std::move(thread_));
}

void PreviewWorker::post(Work work)
{
    {
        const std::lock_guard lock(state_->mutex);
        state_->waiting.push_back(std::move(work));
    }
    state_->posted.notify_one();
    if (!thread_.valid())
        thread_ = std::async(std::launch::async, [state = state_] { state->run(); });
}

void PreviewWorker::dropAll()
{
    const std::lock_guard lock(state_->mutex);
    state_->drop();
}

void PreviewWorker::renewTools()
{
    const std::lock_guard lock(state_->mutex);
    state_->toolsAreOld = true;
}

}  // namespace kelvane
