#include "engine/ordered_tasks.h"

#include <algorithm>
#include <chrono>
#include <system_error>

namespace kelvane {

OrderedTasks::OrderedTasks(std::size_t count, unsigned threads, std::function<Task()> makeTask)
    : count_(count),
      makeTask_(std::move(makeTask)),
      done_(std::make_unique<std::atomic<bool>[]>(count)),
      awaited_(count)
{
    const std::size_t wanted = std::min<std::size_t>(threads, count);
    try {
        for (std::size_t i = 0; i < wanted; ++i)
            threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {  // fewer threads make the work slower, not wrong
    }
}

OrderedTasks::~OrderedTasks()
{
    next_.store(count_);
    threads_.clear();
}

bool OrderedTasks::await(std::size_t number, const CancelFlag& cancel, const std::function<void()>& whileWaiting)
{
    constexpr std::chrono::milliseconds betweenLooks{20};  // nobody tells of a cancel: it may come from a signal
    awaited_.store(number);
    if (threads_.empty())
        doUpTo(number, cancel);
    while (!done_[number].load()) {
        {
            std::unique_lock lock(mutex_);
            finished_.wait_for(lock, betweenLooks, [&] { return done_[number].load() || failure_ != nullptr; });
            if (failure_ != nullptr)
                std::rethrow_exception(failure_);
        }
        if (cancel.cancelled())
            return false;
        whileWaiting();
    }
    return !cancel.cancelled();
}

void OrderedTasks::doUpTo(std::size_t number, const CancelFlag& cancel)
{
    if (!own_)
        own_ = makeTask_();
    while (next_.load() <= number && !cancel.cancelled()) {
        const std::size_t next = next_.fetch_add(1);
        own_(next);
        finish(next);
    }
}

void OrderedTasks::work()
{
    try {
        takeTasks(makeTask_());
    } catch (...) {
        const std::lock_guard lock(mutex_);
        failure_ = std::current_exception();
        finished_.notify_all();
    }
}

void OrderedTasks::takeTasks(const Task& task)
{
    for (std::size_t number = next_.fetch_add(1); number < count_; number = next_.fetch_add(1)) {
        task(number);
        finish(number);
    }
}

// The waiting thread names the task that it waits for before it looks whether that is done, and this one looks at the
// name after it has set it done: so one of the two always sees the other, and the rest go without a lock.
void OrderedTasks::finish(std::size_t number)
{
    done_[number].store(true);
    if (awaited_.load() != number)
        return;
    const std::lock_guard lock(mutex_);
    finished_.notify_all();
}

}  // namespace kelvane
