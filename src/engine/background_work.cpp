#include "engine/background_work.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace kelvane {

BackgroundWork::~BackgroundWork()
{
    drop();
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    added_.notify_all();
}

void BackgroundWork::add(Task task)
{
    std::size_t wanted = 0;
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        wanted = tasks_.size() + working_;
    }
    added_.notify_one();
    if (threads_.size() < most_ && wanted > threads_.size())
        startThread();
}

// Fewer threads make the work slower, not wrong.
void BackgroundWork::startThread()
{
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        most_ = static_cast<unsigned>(threads_.size());
    }
}

bool BackgroundWork::settle(const CancelFlag& cancel, const std::function<void(std::uint64_t done)>& whileWaiting)
{
    constexpr std::chrono::milliseconds betweenLooks{20};  // nobody tells of a cancel: it may come from a signal
    std::unique_lock lock(mutex_);
    while (threads_.empty() && !tasks_.empty() && !cancel.cancelled()) {
        takeOne(lock);
        const std::uint64_t done = done_;
        lock.unlock();
        whileWaiting(done);
        lock.lock();
    }
    const auto over = [this] { return (tasks_.empty() && working_ == 0) || failure_ != nullptr; };
    while (!cancel.cancelled() && !idle_.wait_for(lock, betweenLooks, over)) {
        const std::uint64_t done = done_;
        lock.unlock();
        whileWaiting(done);
        lock.lock();
    }
    if (failure_ != nullptr)
        std::rethrow_exception(std::exchange(failure_, nullptr));
    if (cancel.cancelled())
        return false;
    done_ = 0;
    return true;
}

void BackgroundWork::drop() noexcept
{
    std::unique_lock lock(mutex_);
    tasks_.clear();
    idle_.wait(lock, [this] { return working_ == 0; });
    failure_ = nullptr;
    done_ = 0;
}

void BackgroundWork::work()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        added_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
        if (tasks_.empty())
            return;
        takeOne(lock);
    }
}

void BackgroundWork::takeOne(std::unique_lock<std::mutex>& lock)
{
    const Task task = std::move(tasks_.front());
    tasks_.pop_front();
    ++working_;
    run(task, lock);
    --working_;
    ++done_;
    if (working_ == 0)
        idle_.notify_all();
}

void BackgroundWork::run(const Task& task, std::unique_lock<std::mutex>& lock)
{
    std::exception_ptr failure;
    lock.unlock();
    try {
        task();
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    if (failure != nullptr)
        failure_ = failure;
}

}  // namespace kelvane
