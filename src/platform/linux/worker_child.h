// The process of a worker, as the program holds it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <utility>
#include <vector>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// Sanitizers keep books of their own in terabytes of address space, and tell what they find on standard error.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitizedBuild = true;
#else
inline constexpr bool sanitizedBuild = false;
#endif

// How a process ended: its exit code, or the signal that ended it (then the code is 0).
struct ProcessEnd {
    int exitCode = 0;
    int signal = 0;
};

// Leads a process group of its own, so that the tools that it starts end with it. The destructor kills all of them and
// waits for the worker's end. For one thread at a time.
class WorkerChild {
public:
    // Takes `socket` as its descriptor 3 and nothing else of this program; its environment is the least that programs
    // need.
    [[nodiscard]] static Result<WorkerChild> start(const std::filesystem::path& program,
                                                   const std::vector<std::string>& arguments, const FileHandle& socket);
    WorkerChild(WorkerChild&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
    WorkerChild& operator=(WorkerChild&&) = delete;
    ~WorkerChild() { end(); }

    // Nothing while it runs.
    [[nodiscard]] std::optional<ProcessEnd> endWithin(std::chrono::milliseconds patience) const;
    void end();
    // Bytes of memory that it has in use; nothing where the system does not tell.
    [[nodiscard]] std::optional<std::uint64_t> memoryInUse() const;

private:
    explicit WorkerChild(pid_t id) : id_(id) {}

    pid_t id_;
};

// One thread on which all workers are started. The system tells a worker of the end of the thread that started it, not
// of the program's: so it must be one that lives as long as the program has workers. Thread-safe.
class StartingThread {
public:
    StartingThread() = default;
    ~StartingThread();
    StartingThread(const StartingThread&) = delete;
    StartingThread& operator=(const StartingThread&) = delete;

    // Runs the work there and waits for it; false when there can be no such thread.
    [[nodiscard]] bool run(const std::function<void()>& work);

private:
    void serve();

    std::mutex callers_;
    std::mutex mutex_;
    std::condition_variable changed_;
    const std::function<void()>* work_ = nullptr;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace kelvane::linux_os
