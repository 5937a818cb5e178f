// One filter program while it runs.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// Ends with the thread that started it at the latest; the destructor kills it and waits for its end.
class FilterProcess {
public:
    // `input` and `messages` become its standard input and error; they stay the caller's. Its output comes from
    // output(). It has no other files, an environment of its own, and default signals.
    static constexpr int cannotStart = 127;  // the exit code of a program that did not start, as shells have it

    [[nodiscard]] static Result<FilterProcess>
    start(const std::filesystem::path& program, const std::vector<std::string>& arguments, int input, int messages);
    FilterProcess(FilterProcess&&) noexcept = default;
    FilterProcess& operator=(FilterProcess&&) = delete;
    ~FilterProcess();

    [[nodiscard]] int output() const { return output_.get(); }
    // Can be read from once the program has ended.
    [[nodiscard]] int end() const { return process_.get(); }
    void kill() const;
    // Waits. The exit code, 128 and the signal's number for one that was killed.
    [[nodiscard]] Result<int> wait();

private:
    FilterProcess(FileHandle process, FileHandle output) : process_(std::move(process)), output_(std::move(output)) {}

    FileHandle process_;  // a pidfd: unlike the number it is never another process's; invalid once it was waited for
    FileHandle output_;
};

}  // namespace kelvane::linux_os
