// One results window with the thread that it lives on.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "app/application_host.h"
#include "app/background_operations.h"
#include "app/thread_messages.h"
#include "app/thread_reference.h"
#include "platform/crash_capture.h"

namespace kelvane {

// What the instances of a process share. Thread-safe, and there for as long as any instance is.
struct InstanceContext {
    ApplicationHost& host;
    ThreadMessages& messages;
    Waiting& waiting;
    BackgroundOperations& background;
    CrashCapture& crashes;
    std::atomic<int>& openLoops;                      // windows that have not closed yet
    std::function<void(CXInstance&)> firstPrompts;    // on the thread of the first window, before its loop
    std::function<std::u16string()> settingsFailure;  // what to tell when an INI file cannot be written; else empty
    bool holdsThreads = true;                         // whether a window's thread waits for those who need it
};

// Made and destroyed by the main thread, which keeps the list of all; the thread of its own keeps it as well. Other
// threads use the handle.
class CXInstance final : public std::enable_shared_from_this<CXInstance> {
public:
    CXInstance(InstanceNumber number, CommandLine line, bool first, const InstanceContext& context);
    ~CXInstance();
    CXInstance(const CXInstance&) = delete;
    CXInstance& operator=(const CXInstance&) = delete;

    [[nodiscard]] InstanceNumber number() const { return number_; }
    [[nodiscard]] WindowHandle handle();

    // On the main thread. Nothing runs before start(), so that the instance is in the list when its thread begins;
    // false when the system gives no thread.
    [[nodiscard]] bool start();
    // After the thread said that it ended. One that does not return in time is left to itself.
    void awaitEnd(std::chrono::milliseconds limit);

    // On the thread of the window.
    [[nodiscard]] const CommandLine& commandLine() const { return line_; }
    [[nodiscard]] bool isFirst() const { return first_; }
    // Keeps the thread alive beyond its window, for a few seconds at most.
    [[nodiscard]] ThreadReference::Hold holdThread() { return reference_.hold(); }
    // Long work calls this between its items: closing, probes and other messages are served meanwhile.
    void servePending() { queue_->servePending(); }

    // On any thread. Work that is posted too late is dropped.
    void post(WorkQueue::Work work) { queue_->post(std::move(work)); }
    void quit();  // ends the window's loop
    [[nodiscard]] bool isQuitting() const { return quitting_.load(); }

private:
    void run();
    void runWindow();
    void afterLoop(bool last);
    void settleBackgroundOperations();

    const InstanceNumber number_;
    const CommandLine line_;
    const bool first_;
    const InstanceContext context_;
    const std::shared_ptr<WorkQueue> queue_;
    ThreadReference reference_;
    std::unique_ptr<Window> window_;  // the thread's own
    std::atomic<bool> quitting_{false};
    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool ended_ = false;  // guarded by mutex_
};

}  // namespace kelvane
