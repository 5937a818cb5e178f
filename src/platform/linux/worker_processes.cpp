#include "platform/worker_processes.h"

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
#include "platform/worker_frames.h"

namespace kelvane {
namespace linux_os {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds betweenLooks{20};     // at the cancel flag and the memory in use
constexpr milliseconds timeToStart{20'000};  // on a machine that is busy with other things
constexpr milliseconds timeToEnd{100};       // of a worker that closed its socket
constexpr std::size_t piece = std::size_t{256} * 1024;

// Why an exchange did not come about, nothing when it did.
using Failure = std::optional<WorkerEnd>;

// How long one exchange may take.
class Patience {
public:
    Patience(milliseconds time, const CancelFlag& cancel)
        : end_(time.count() > 0 ? steady_clock::now() + time : steady_clock::time_point::max()), cancel_(cancel)
    {
    }

    [[nodiscard]] Failure over() const
    {
        if (cancel_.cancelled())
            return WorkerEnd::cancelled;
        return steady_clock::now() >= end_ ? Failure(WorkerEnd::timedOut) : Failure();
    }
    // For poll().
    [[nodiscard]] int nextLook() const
    {
        const auto left = end_ - steady_clock::now();
        return left > betweenLooks ? static_cast<int>(betweenLooks.count())
                                   : std::max(0, static_cast<int>(std::chrono::ceil<milliseconds>(left).count()));
    }

private:
    steady_clock::time_point end_;
    const CancelFlag& cancel_;
};

class LinuxWorkerProcess final : public WorkerProcess {
public:
    LinuxWorkerProcess(FileHandle socket, WorkerChild child, const WorkerLimits& limits)
        : socket_(std::move(socket)), child_(std::move(child)), limits_(limits)
    {
    }

    // Waits until the worker is confined.
    Status greet();
    WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input, const CancelFlag& cancel) override;
    bool alive() const override;
    WorkerConfinement confinement() const override { return confinement_; }

private:
    Failure send(std::span<const std::byte> bytes, const FileHandle& file, const Patience& patience);
    Failure receive(std::vector<std::byte>& message, std::uint32_t serial, std::uint64_t longest,
                    const Patience& patience);
    Failure receiveAll(std::span<std::byte> bytes, const Patience& patience);
    Failure waitFor(short events, const Patience& patience);
    Failure exchange(std::span<const std::byte> request, const FileHandle& file, std::vector<std::byte>& answer,
                     const Patience& patience);
    WorkerAnswer endAs(WorkerEnd end);
    void noteWhyItEnded(WorkerAnswer& answer);

    FileHandle socket_;
    WorkerChild child_;
    WorkerLimits limits_;
    WorkerConfinement confinement_;
    std::uint32_t serial_ = 0;
    std::string fault_;  // what it did that none of ours does
};

Failure LinuxWorkerProcess::waitFor(short events, const Patience& patience)
{
    for (;;) {
        if (const Failure over = patience.over())
            return over;
        pollfd wanted{socket_.get(), events, 0};
        const int ready = uninterrupted([&] { return ::poll(&wanted, 1, patience.nextLook()); });
        if (ready > 0)
            return std::nullopt;
        if (ready < 0)
            return WorkerEnd::died;
        if (limits_.memoryBytes != 0 && child_.memoryInUse().value_or(0) > limits_.memoryBytes)
            return WorkerEnd::tooMuchMemory;
    }
}

// The file goes with the first bytes that the socket takes.
Failure LinuxWorkerProcess::send(std::span<const std::byte> bytes, const FileHandle& file, const Patience& patience)
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
Failure LinuxWorkerProcess::receiveAll(std::span<std::byte> bytes, const Patience& patience)
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

Failure LinuxWorkerProcess::receive(std::vector<std::byte>& message, std::uint32_t serial, std::uint64_t longest,
                                    const Patience& patience)
{
    std::array<std::byte, workerHeaderSize> head;
    if (const Failure failure = receiveAll(head, patience))
        return failure;
    const auto header = parseWorkerHeader(head);
    if (!header || header->serial != serial || (longest != 0 && header->length > longest)) {
        fault_ = header && header->serial == serial ? "it answered with too much" : "it answered with nonsense";
        return WorkerEnd::died;
    }
    // Memory is taken for what has come, not for what is claimed.
    while (message.size() < header->length) {
        const std::size_t have = message.size();
        message.resize(have + std::min<std::size_t>(piece, header->length - have));
        if (const Failure failure = receiveAll(std::span(message).subspan(have), patience))
            return failure;
    }
    return std::nullopt;
}

Failure LinuxWorkerProcess::exchange(std::span<const std::byte> request, const FileHandle& file,
                                     std::vector<std::byte>& answer, const Patience& patience)
{
    ++serial_;
    if (const Failure failure = send(frameWorkerMessage(serial_, request), file, patience))
        return failure;
    return receive(answer, serial_, limits_.answerBytes, patience);
}

Status LinuxWorkerProcess::greet()
{
    const CancelFlag never;
    std::vector<std::byte> message;
    const Failure failure = receive(message, 0, workerGreetingSize, Patience(timeToStart, never));
    const auto greeting = failure ? std::nullopt : decodeGreeting(message);
    if (greeting) {
        confinement_ = *greeting;
        return {};
    }
    const WorkerAnswer why = endAs(failure.value_or(WorkerEnd::died));
    return Error{ErrorKind::invalid, why.error.systemCode, "it does not start: " + why.error.detail};
}

WorkerAnswer LinuxWorkerProcess::ask(std::span<const std::byte> request, const WorkerInput& input,
                                     const CancelFlag& cancel)
{
    if (!socket_.valid())
        return {WorkerEnd::died, {}, {ErrorKind::io, 0, "it had ended before"}};
    if (request.size() > longestWorkerRequest)
        return {WorkerEnd::notOpened, {}, {ErrorKind::invalid, 0, "the request is too long"}};
    const auto file = openWorkerInput(input);
    if (!file)
        return {WorkerEnd::notOpened, {}, file.error()};
    WorkerAnswer answer;
    const Failure failure = exchange(request, *file, answer.message, Patience(limits_.perRequest, cancel));
    if (failure)
        return endAs(*failure);
    answer.end = WorkerEnd::answered;
    return answer;
}

// Silence is part of it: whoever speaks unasked is not in step any more.
bool LinuxWorkerProcess::alive() const
{
    if (!socket_.valid())
        return false;
    pollfd heard{socket_.get(), POLLIN, 0};
    return uninterrupted([&] { return ::poll(&heard, 1, 0); }) == 0;
}

WorkerAnswer LinuxWorkerProcess::endAs(WorkerEnd end)
{
    WorkerAnswer answer{end, {}, {ErrorKind::io, 0, fault_}};
    if (end == WorkerEnd::died && fault_.empty())
        noteWhyItEnded(answer);
    socket_ = FileHandle();
    child_.end();
    return answer;
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

    Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits) override
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
        if (const Status status = worker->greet(); !status)
            return status.error();
        return std::unique_ptr<WorkerProcess>(std::move(worker));
    }

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
