// Work on one thing after the other, done by threads in the background while more is handed over.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "base/cancel.h"

namespace kelvane {

// Things are taken in the order in which they come, as numbers from 0. Handed over, settled and ended on one thread.
class BackgroundWork {
public:
    using Task = std::function<void()>;

    explicit BackgroundWork(unsigned threads) : most_(threads) {}
    // Drops what was not begun, and waits for what is in work.
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    // Threads are started as they are needed. Where the system gives none, the work is done while it is settled.
    void add(Task task);
    // Waits until nothing is left to do; calls the function about every 20 ms of waiting with how many tasks are done
    // since the last settling. False when cancelled, with work left. An exception of any task is thrown again here.
    [[nodiscard]] bool settle(const CancelFlag& cancel, const std::function<void(std::uint64_t done)>& whileWaiting);
    // Drops what was not begun, and waits for what is in work.
    void drop() noexcept;

private:
    void startThread();
    void work();
    void takeOne(std::unique_lock<std::mutex>& lock);
    void run(const Task& task, std::unique_lock<std::mutex>& lock);

    unsigned most_;
    std::mutex mutex_;  // over all that follows but the threads
    std::condition_variable added_, idle_;
    std::deque<Task> tasks_;
    unsigned working_ = 0;
    std::uint64_t done_ = 0;
    std::exception_ptr failure_;
    bool ending_ = false;
    std::vector<std::jthread> threads_;
};

}  // namespace kelvane
