#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>

#include "platform/linux/adapters.h"
#include "platform/linux/os_error.h"
#include "platform/linux/worker_child.h"
#include "platform/linux/worker_input.h"
#include "platform/worker_dialogue.h"
#include "platform/worker_frames.h"

namespace kelvane {
namespace linux_os {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds timeToEnd{100};  // of a worker that closed its socket

class LinuxWorkerProcess final : public WorkerDialogue {
public:
    LinuxWorkerProcess(FileHandle socket, WorkerChild child, const WorkerLimits& limits)
        : WorkerDialogue(limits), socket_(std::move(socket)), child_(std::move(child))
    {
    }

    bool alive() const override;

private:
    bool connected() const override { return socket_.valid(); }
    Result<Failure> send(std::uint32_t serial, std::span<const std::byte> request, const WorkerInput& input,
                         const Patience& patience) override;
    Failure receive(std::span<std::byte> bytes, const Patience& patience) override;
    void noteWhyItEnded(WorkerAnswer& answer) override;
    void disconnect() override;

    Failure sendAll(std::span<const std::byte> bytes, const FileHandle& file, const Patience& patience);
    Failure waitFor(short events, const Patience& patience);

    FileHandle socket_;
    WorkerChild child_;
};

WorkerDialogue::Failure LinuxWorkerProcess::waitFor(short events, const Patience& patience)
{
    for (;;) {
        if (const Failure over = patience.over())
            return over;
        pollfd wanted{socket_.get(), events, 0};
        const int ready =
            uninterrupted([&] { return ::poll(&wanted, 1, static_cast<int>(patience.nextLook().count())); });
        if (ready > 0)
            return std::nullopt;
        if (ready < 0)
            return WorkerEnd::died;
        if (limits().memoryBytes != 0 && child_.memoryInUse().value_or(0) > limits().memoryBytes)
            return WorkerEnd::tooMuchMemory;
    }
}

// The file goes with the first bytes that the socket takes.
WorkerDialogue::Failure LinuxWorkerProcess::sendAll(std::span<const std::byte> bytes, const FileHandle& file,
                                                    const Patience& patience)
{
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    bool fileSent = false;
    while (!bytes.empty()) {
        iovec part{const_cast<std::byte*>(bytes.data()), bytes.size()};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        if (!fileSent) {
            message.msg_control = control.data();
            message.msg_controllen = control.size();
            cmsghdr* const header = CMSG_FIRSTHDR(&message);
            header->cmsg_level = SOL_SOCKET;
            header->cmsg_type = SCM_RIGHTS;
            header->cmsg_len = CMSG_LEN(sizeof(int));
            *reinterpret_cast<int*>(CMSG_DATA(header)) = file.get();
        }
        const ssize_t sent =
            uninterrupted([&] { return ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT); });
        if (sent >= 0) {
            fileSent = true;
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
        } else if (errno != EAGAIN && errno != EWOULDBLOCK) {
            return WorkerEnd::died;
        } else if (const Failure failure = waitFor(POLLOUT, patience)) {
            return failure;
        }
    }
    return std::nullopt;
}

// recv() drops descriptors that a worker may send along.
WorkerDialogue::Failure LinuxWorkerProcess::receive(std::span<std::byte> bytes, const Patience& patience)
{
    while (!bytes.empty()) {
        if (const Failure failure = waitFor(POLLIN, patience))
            return failure;
        const ssize_t got =
            uninterrupted([&] { return ::recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT); });
        if (got > 0)
            bytes = bytes.subspan(static_cast<std::size_t>(got));
        else if (got == 0 || (errno != EAGAIN && errno != EWOULDBLOCK))
            return WorkerEnd::died;
    }
    return std::nullopt;
}

Result<WorkerDialogue::Failure> LinuxWorkerProcess::send(std::uint32_t serial, std::span<const std::byte> request,
                                                         const WorkerInput& input, const Patience& patience)
{
    const auto file = openWorkerInput(input);
    if (!file)
        return file.error();
    return sendAll(frameWorkerMessage(serial, request), *file, patience);
}

// Silence is part of it: whoever speaks unasked is not in step any more.
bool LinuxWorkerProcess::alive() const
{
    if (!socket_.valid())
        return false;
    pollfd heard{socket_.get(), POLLIN, 0};
    return uninterrupted([&] { return ::poll(&heard, 1, 0); }) == 0;
}

void LinuxWorkerProcess::disconnect()
{
    socket_ = FileHandle();
    child_.end();
}

void LinuxWorkerProcess::noteWhyItEnded(WorkerAnswer& answer)
{
    const auto end = child_.endWithin(timeToEnd);
    if (!end) {
        answer.error.detail = "it closed its end";
        return;
    }
    // Nobody but the system, when it is short of memory, ends a process so.
    if (end->signal == SIGKILL || (end->signal == 0 && end->exitCode == workerOutOfMemory))
        answer.end = WorkerEnd::tooMuchMemory;
    answer.error.systemCode = end->signal != 0 ? end->signal : end->exitCode;
    answer.error.detail = (end->signal != 0 ? "it ended by signal " : "it ended with exit code ") +
                          std::to_string(answer.error.systemCode);
}

class LinuxWorkerProcesses final : public WorkerProcesses {
public:
    explicit LinuxWorkerProcesses(WorkerPrograms programs) : programs_(std::move(programs)) {}

    Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits, const CancelFlag& cancel) override
    {
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
            return osError(errno);
        FileHandle ours(ends[0]), theirs(ends[1]);
        auto child = startChild(limits, theirs);
        if (!child)
            return child.error();
        theirs = FileHandle();
        auto worker = std::make_unique<LinuxWorkerProcess>(std::move(ours), std::move(*child), limits);
        if (const Status status = worker->greet(cancel); !status)
            return status.error();
        return std::unique_ptr<WorkerProcess>(std::move(worker));
    }
    WorkerConfinement known() const override { return {true, true, true, !sanitizedBuild}; }

private:
    Result<WorkerChild> startChild(const WorkerLimits& limits, const FileHandle& socket)
    {
        const auto isThere = [](const std::filesystem::path& program) { return ::access(program.c_str(), X_OK) == 0; };
        const auto& candidates = limits.program == WorkerProgram::media ? programs_.media : programs_.documents;
        const auto program = std::find_if(candidates.begin(), candidates.end(), isThere);
        if (program == candidates.end())
            return Error{ErrorKind::notFound, 0, "the worker's program is not installed"};
        const auto words = workerArguments(limits);
        std::optional<Result<WorkerChild>> child;
        const bool ran = starter_.run([&] {
            child.emplace(WorkerChild::start(*program, {words.begin(), words.end()}, socket));
        });
        return ran ? std::move(*child) : osError(EAGAIN);
    }

    WorkerPrograms programs_;
    StartingThread starter_;
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<WorkerProcesses> makeLinuxWorkerProcesses(WorkerPrograms programs)
{
    return std::make_unique<linux_os::LinuxWorkerProcesses>(std::move(programs));
}

WorkerPrograms workerPrograms(const std::filesystem::path& programFile)
{
    const auto places = [&](WorkerProgram program) {
        const auto folder = programFile.parent_path();
        const auto above = folder.parent_path();
        const std::string_view name = workerProgramName(program);
        return std::vector{folder / name, above / name, above / "libexec" / "kelvane" / name};
    };
    return {places(WorkerProgram::documents), places(WorkerProgram::media)};
}

}  // namespace kelvane
