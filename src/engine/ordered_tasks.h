// Numbered tasks done ahead by worker threads, while one thread takes their results in order.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "base/cancel.h"

namespace kelvane {

// Tasks are begun in ascending order, each once. Made, awaited and ended on one thread.
class OrderedTasks {
public:
    using Task = std::function<void(std::size_t number)>;

    // makeTask is called once on each thread, so that a thread may have buffers of its own. Where the system gives no
    // thread, tasks are done while they are awaited.
    OrderedTasks(std::size_t count, unsigned threads, std::function<Task()> makeTask);
    // Begins no further task and waits for those in work.
    ~OrderedTasks();
    OrderedTasks(const OrderedTasks&) = delete;
    OrderedTasks& operator=(const OrderedTasks&) = delete;

    // Waits until the task is done; what it did is then seen by the caller. Calls the function about every 20 ms of
    // waiting. False when cancelled. An exception of any task is thrown again here.
    [[nodiscard]] bool await(std::size_t number, const CancelFlag& cancel, const std::function<void()>& whileWaiting);

private:
    void work();
    void doUpTo(std::size_t number, const CancelFlag& cancel);
    void takeTasks(const Task& task);
    void finish(std::size_t number);

    const std::size_t count_;
    const std::function<Task()> makeTask_;
    std::unique_ptr<std::atomic<bool>[]> done_;
    std::atomic<std::size_t> next_{0};
    std::atomic<std::size_t> awaited_;
    std::mutex mutex_;
    std::condition_variable finished_;
    std::exception_ptr failure_;  // guarded by mutex_
    Task own_;                    // of the awaiting thread, where there is no other
    std::vector<std::jthread> threads_;
};

}  // namespace kelvane
