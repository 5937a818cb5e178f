#include "ui/preview/preview_worker.h"

#include <utility>

namespace kelvane {

PreviewWorker::PreviewWorker(Platform& platform, Settings settings)
    : platform_(platform), settings_(std::move(settings))
{
}

PreviewWorker::~PreviewWorker()
{
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        waiting_.clear();
        cancel_.cancel();
    }
    posted_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

void PreviewWorker::post(Work work)
{
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(work));
    }
    posted_.notify_one();
    if (!thread_.joinable())
        thread_ = std::thread([this] { run(); });
}

void PreviewWorker::dropAll()
{
    const std::lock_guard lock(mutex_);
    waiting_.clear();
    cancel_.cancel();
}

// Whoever cancels holds the lock, so that no work begins with the flag of the one before.
PreviewWorker::Work PreviewWorker::next()
{
    std::unique_lock lock(mutex_);
    posted_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
    if (ending_)
        return nullptr;
    Work work = std::move(waiting_.front());
    waiting_.pop_front();
    cancel_.reset();
    return work;
}

void PreviewWorker::run()
{
    std::unique_ptr<PreviewTools> tools;
    while (const Work work = next()) {
        if (!tools)
            tools = std::make_unique<PreviewTools>(platform_, settings_, cancel_);
        work(*tools);
    }
}

}  // namespace kelvane
