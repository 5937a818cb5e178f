#include "platform/filter_programs.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <poll.h>

#include "platform/linux/adapters.h"
#include "platform/linux/child_process.h"
#include "platform/linux/descriptor_file.h"
#include "platform/linux/filter_process.h"
#include "platform/linux/os_error.h"
#include "platform/linux/sealed_memory.h"

namespace kelvane {
namespace linux_os {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::size_t piece = std::size_t{64} * 1024;

// The program gets the file as its standard input, and reads or seeks as it likes.
Result<FileHandle> asInput(RandomAccessFile& file)
{
    if (const auto* own = dynamic_cast<const DescriptorFile*>(&file)) {
        FileHandle copy(::fcntl(own->descriptor(), F_DUPFD_CLOEXEC, 0));
        if (!copy.valid() || ::lseek(copy.get(), 0, SEEK_SET) != 0)
            return osError(errno);
        return copy;
    }
    std::uint64_t position = 0;
    return sealedMemory([&](std::span<std::byte> buffer) {
        auto count = file.readAt(position, buffer);
        position += count ? *count : 0;
        return count;
    });
}

bool isCString(const std::string& text)
{
    return text.find('\0') == std::string::npos;
}

class LinuxFilterPrograms final : public FilterPrograms {
public:
    LinuxFilterPrograms(milliseconds patience, std::string searchPath)
        : patience_(patience), searchPath_(std::move(searchPath)), nothing_(::open("/dev/null", O_WRONLY | O_CLOEXEC))
    {
    }

    bool installed(const std::string& program) const override { return !findProgram(program, searchPath_).empty(); }

    Status run(const std::string& program, const std::vector<std::string>& arguments, RandomAccessFile& input,
               const OutputSink& sink) override;

private:
    enum class Reading { ended, enough, tooLate, failed };
    [[nodiscard]] Reading drain(const FilterProcess& process, const OutputSink& sink) const;
    [[nodiscard]] static bool waitFor(int file, steady_clock::time_point deadline);

    milliseconds patience_;
    std::string searchPath_;
    FileHandle nothing_;  // opened early: a worker could not do it any more
};

Status LinuxFilterPrograms::run(const std::string& program, const std::vector<std::string>& arguments,
                                RandomAccessFile& input, const OutputSink& sink)
{
    const auto path = findProgram(program, searchPath_);
    if (path.empty())
        return Error{ErrorKind::notFound, 0, program + " is not installed"};
    if (!std::all_of(arguments.begin(), arguments.end(), isCString))
        return osError(EINVAL);
    const auto file = asInput(input);
    if (!file)
        return file.error();
    auto process = FilterProcess::start(path, arguments, file->get(), nothing_.get());
    if (!process)
        return process.error();
    const Reading reading = drain(*process, sink);
    if (reading != Reading::ended)
        process->kill();
    const auto code = process->wait();
    if (reading == Reading::enough || (reading == Reading::ended && code && *code == 0))
        return {};
    if (reading == Reading::tooLate)
        return Error{ErrorKind::io, 0, program + " took too long"};
    if (reading == Reading::failed || !code)
        return Error{ErrorKind::io, 0, "the output of " + program + " could not be read"};
    // Not started, or killed: that says nothing about the file, and the next time may be better.
    const bool passing = *code >= FilterProcess::cannotStart;
    return Error{passing ? ErrorKind::io : ErrorKind::invalid, *code,
                 program + " ended with code " + std::to_string(*code)};
}

bool LinuxFilterPrograms::waitFor(int file, steady_clock::time_point deadline)
{
    int patience = -1;
    if (deadline != steady_clock::time_point::max()) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
        patience = static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
    }
    pollfd wanted{file, POLLIN, 0};
    return uninterrupted([&] { return ::poll(&wanted, 1, patience); }) != 0;
}

LinuxFilterPrograms::Reading LinuxFilterPrograms::drain(const FilterProcess& process, const OutputSink& sink) const
{
    const auto deadline = patience_.count() > 0 ? steady_clock::now() + patience_ : steady_clock::time_point::max();
    std::vector<std::byte> buffer(piece);
    while (waitFor(process.output(), deadline)) {
        const ssize_t got = uninterrupted([&] { return ::read(process.output(), buffer.data(), buffer.size()); });
        if (got < 0)
            return Reading::failed;
        if (got == 0)  // which a program may bring about and go on all the same
            return waitFor(process.end(), deadline) ? Reading::ended : Reading::tooLate;
        if (!sink(std::span(buffer).first(static_cast<std::size_t>(got))))
            return Reading::enough;
    }
    return Reading::tooLate;
}

}  // namespace
}  // namespace linux_os

std::unique_ptr<FilterPrograms> makeLinuxFilterPrograms(std::chrono::milliseconds patience, std::string searchPath)
{
    return std::make_unique<linux_os::LinuxFilterPrograms>(patience, std::move(searchPath));
}

}  // namespace kelvane
