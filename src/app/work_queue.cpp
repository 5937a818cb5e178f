#include "app/work_queue.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kelvane {
namespace {

// Tells the asking thread that the question was taken, or that nobody is left to take it: when its last copy goes.
struct Answer {
    std::mutex mutex;
    std::condition_variable changed;
    bool given = false;
};

std::shared_ptr<void> answeredWhenGone(const std::shared_ptr<Answer>& answer)
{
    return {nullptr, [answer](void*) {
                const std::lock_guard lock(answer->mutex);
                answer->given = true;
                answer->changed.notify_all();
            }};
}

}  // namespace

bool WorkQueue::post(Work work)
{
    {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return false;
        waitingWork_.push_back(std::move(work));
    }
    changed_.notify_all();
    return true;
}

void WorkQueue::wake()
{
    {
        const std::lock_guard lock(mutex_);
        woken_ = true;
    }
    changed_.notify_all();
}

void WorkQueue::close()
{
    std::deque<Work> dropped;
    const std::lock_guard lock(mutex_);
    closed_ = true;
    dropped.swap(waitingWork_);
}

bool WorkQueue::answersWithin(std::chrono::milliseconds limit)
{
    if (server_.load() == std::this_thread::get_id())
        return true;
    const auto answer = std::make_shared<Answer>();
    // An empty message; a closed queue drops it, which answers as well.
    post([token = answeredWhenGone(answer)] {});
    std::unique_lock lock(answer->mutex);
    return waiting_.until(lock, answer->changed, limit, [&] { return answer->given; });
}

// Waits for nothing.
bool WorkQueue::takeNext(Work& work)
{
    const std::lock_guard lock(mutex_);
    if (waitingWork_.empty())
        return false;
    work = std::move(waitingWork_.front());
    waitingWork_.pop_front();
    return true;
}

void WorkQueue::servePending()
{
    server_.store(std::this_thread::get_id());
    for (Work work; takeNext(work); work = nullptr)
        work();
}

void WorkQueue::serve(const std::function<bool()>& enough)
{
    server_.store(std::this_thread::get_id());
    while (!enough()) {
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return somethingToDo(); });
            woken_ = false;
        }
        if (Work work; takeNext(work))
            work();
    }
}

bool WorkQueue::serveFor(std::chrono::milliseconds limit, const std::function<bool()>& enough)
{
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    for (auto left = limit; !enough(); left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now())) {
        {
            std::unique_lock lock(mutex_);
            const bool timely =
                left.count() > 0 && waiting_.until(lock, changed_, left, [this] { return somethingToDo(); });
            woken_ = false;
            if (!timely)
                break;
        }
        if (Work work; takeNext(work))
            work();
    }
    return enough();
}

}  // namespace kelvane
