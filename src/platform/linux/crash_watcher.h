// The process beside the program that writes its crash dumps: it is whole when the program is not.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/result.h"
#include "platform/linux/crash_message.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

struct WatcherOptions {
    std::string dump;                             // absolute; of faults
    std::string program;                          // started again after a crash
    std::chrono::milliseconds leastLife{60'000};  // a program that lived shorter is not: it would only crash again
};

// The running watcher as the watched process sees it. The watcher ends with that process, or when this is destroyed.
// It belongs to nobody's console, keeps no file of the program open, and is no child that the program had to wait for.
class CrashWatcher {
public:
    CrashWatcher() = default;

    // Forks. At this moment no other thread should run.
    [[nodiscard]] static Result<CrashWatcher> start(const WatcherOptions& options);

    // Sends a request with a path and waits for the answer. None from a watcher that is gone or hangs: it must not be
    // asked again then, since its late answer would be taken for the next one.
    [[nodiscard]] std::optional<CrashAnswer> ask(CrashRequest request, const std::string& path,
                                                 std::chrono::milliseconds patience) const;

    // For the fault handler alone, so that answers are never mixed up.
    [[nodiscard]] int faultSocket() const { return faults_.get(); }
    [[nodiscard]] pid_t process() const { return process_; }
    [[nodiscard]] bool running() const { return faults_.valid(); }

private:
    FileHandle faults_;
    FileHandle commands_;
    pid_t process_ = 0;
};

// Waits for an answer on a socket; none when the time is up or the other end is gone. Safe in a signal handler.
[[nodiscard]] std::optional<CrashAnswer> receiveAnswer(int socket, std::chrono::milliseconds patience) noexcept;

}  // namespace kelvane::linux_os
