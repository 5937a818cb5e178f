// Programs that run beside this one and outlive it.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

#include "base/result.h"

namespace kelvane::linux_os {

// One started program. It has a session of its own, so that Ctrl-C in our terminal is not meant for it, nothing for
// standard streams, and the signals as a program expects them. Destroying the object leaves it running; the system's
// list of processes is kept clean all the same.
class ChildProcess {
public:
    // The arguments reach the program as they are; no shell is asked. `invalid` when one holds a zero byte.
    [[nodiscard]] static Result<ChildProcess> start(const std::filesystem::path& program,
                                                    const std::vector<std::string>& arguments);

    ChildProcess(ChildProcess&& other) noexcept : id_(std::exchange(other.id_, 0)), exitCode_(other.exitCode_) {}
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t id() const { return id_; }

    // How it ended, 128 and the signal's number for one that was killed; nothing while it runs.
    [[nodiscard]] std::optional<int> exitCode();
    [[nodiscard]] std::optional<int> exitCodeWithin(std::chrono::milliseconds time);

private:
    explicit ChildProcess(pid_t id) : id_(id) {}

    pid_t id_;
    std::optional<int> exitCode_;
};

// The program of this name in a search path as the PATH variable holds it; folders that are not absolute are passed
// over. Empty when there is none.
[[nodiscard]] std::filesystem::path findProgram(const std::string& name, const std::string& searchPath);

}  // namespace kelvane::linux_os
