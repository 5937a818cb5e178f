// The process of a worker, as the program holds it.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/windows/handle.h"
#include "platform/worker_processes.h"

namespace kelvane::windows_os {

// In a job of its own: no process but itself, no more memory than it is allowed, and it ends with the job, which ends
// with this program at the latest. Its token has no privileges and low integrity, so that it changes no file, where the
// system lets a program give that away; where not, it has the token of this program. The destructor ends it and waits
// for that.
class WorkerChild {
public:
    // Takes `pipe` along and no other handle. Its number on the command line follows the arguments.
    [[nodiscard]] static Result<WorkerChild> start(const std::filesystem::path& program,
                                                   const std::vector<std::string>& arguments, const Handle& pipe,
                                                   const WorkerLimits& limits);
    WorkerChild(WorkerChild&& other) noexcept = default;
    WorkerChild& operator=(WorkerChild&&) = delete;
    ~WorkerChild() { end(); }

    // The number of a file's handle in the worker, which closes it.
    [[nodiscard]] Result<std::uint64_t> give(const Handle& file) const;
    // Its exit code; nothing while it runs.
    [[nodiscard]] std::optional<unsigned long> endWithin(std::chrono::milliseconds patience) const;
    void end();

private:
    WorkerChild(Handle job, Handle process) : job_(std::move(job)), process_(std::move(process)) {}

    Handle job_;
    Handle process_;
};

}  // namespace kelvane::windows_os
