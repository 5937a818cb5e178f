// The message queue of a window's thread: work posted by other threads, done by the one thread that serves it.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "app/waiting.h"

namespace kelvane {

// post(), wake(), close() and answersWithin() may be called on any thread; the rest belongs to the serving one.
class WorkQueue {
public:
    using Work = std::function<void()>;

    explicit WorkQueue(Waiting& waiting) : waiting_(waiting) {}
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;

    // False, and the work dropped, once the queue is closed.
    bool post(Work work);
    // Lets serveUntil() look at its condition again.
    void wake();
    // What still waits is dropped.
    void close();

    // Whether the serving thread takes work within this time. A closed queue has no thread that could hang: true.
    [[nodiscard]] bool answersWithin(std::chrono::milliseconds limit);

    // Does what has been posted until the condition holds, however long that takes.
    void serve(const std::function<bool()>& enough);
    // The same for a limited time; gives whether the condition holds.
    [[nodiscard]] bool serveFor(std::chrono::milliseconds limit, const std::function<bool()>& enough);
    // Does what is there now: called by long work between its items, so that its window stays alive.
    void servePending();

private:
    [[nodiscard]] bool takeNext(Work& work);
    [[nodiscard]] bool somethingToDo() const { return woken_ || !waitingWork_.empty(); }  // under the lock

    Waiting& waiting_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work> waitingWork_;
    bool woken_ = false;
    bool closed_ = false;
    std::atomic<std::thread::id> server_;
};

}  // namespace kelvane
