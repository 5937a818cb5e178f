#include "platform/worker_processes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <windows.h>

#include "base/byte_stream.h"
#include "platform/windows/adapters.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"
#include "platform/windows/worker_child.h"
#include "platform/windows/worker_pipe.h"
#include "platform/worker_frames.h"

namespace kelvane {
namespace windows_os {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds timeToStart{20'000};  // on a machine that is busy with other things
constexpr milliseconds timeToEnd{500};       // of a worker that closed its pipe
constexpr std::size_t piece = std::size_t{256} * 1024;
constexpr DWORD outOfMemoryStatus = 0xC0000017;  // STATUS_NO_MEMORY
constexpr DWORD commitLimitStatus = 0xC000012D;  // STATUS_COMMITMENT_LIMIT

using Failure = std::optional<WorkerEnd>;

class WindowsWorkerProcess final : public WorkerProcess {
public:
    WindowsWorkerProcess(WorkerPipe pipe, WorkerChild child, const WorkerLimits& limits)
        : pipe_(std::move(pipe)), child_(std::move(child)), limits_(limits)
    {
    }

    // Waits until the worker is there.
    Status greet();
    WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input, const CancelFlag& cancel) override;
    bool alive() const override { return pipe_.silent(); }
    WorkerConfinement confinement() const override { return confinement_; }

private:
    Failure receive(std::vector<std::byte>& message, std::uint32_t serial, std::uint64_t longest,
                    const Patience& patience);
    WorkerAnswer exchange(std::span<const std::byte> request, std::uint64_t file, std::span<const std::byte> bytes,
                          const CancelFlag& cancel);
    WorkerAnswer endAs(WorkerEnd end);
    void noteWhyItEnded(WorkerAnswer& answer);

    WorkerPipe pipe_;
    WorkerChild child_;
    WorkerLimits limits_;
    WorkerConfinement confinement_;
    std::uint32_t serial_ = 0;
    std::string fault_;  // what it did that none of ours does
};

Failure WindowsWorkerProcess::receive(std::vector<std::byte>& message, std::uint32_t serial, std::uint64_t longest,
                                      const Patience& patience)
{
    std::array<std::byte, workerHeaderSize> head;
    if (const Failure failure = pipe_.receive(head, patience))
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
        if (const Failure failure = pipe_.receive(std::span(message).subspan(have), patience))
            return failure;
    }
    return std::nullopt;
}

Status WindowsWorkerProcess::greet()
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

// In front of a request stand the handle of its file, 0 for none, and how many bytes follow it in place of a file.
WorkerAnswer WindowsWorkerProcess::exchange(std::span<const std::byte> request, std::uint64_t file,
                                            std::span<const std::byte> bytes, const CancelFlag& cancel)
{
    ByteWriter message;
    message.number(file);
    message.number(static_cast<std::uint64_t>(bytes.size()));
    message.bytes(request);
    const Patience patience(limits_.perRequest, cancel);
    WorkerAnswer answer;
    Failure failure = pipe_.send(frameWorkerMessage(++serial_, message.written()), patience);
    if (!failure)
        failure = pipe_.send(bytes, patience);
    if (!failure)
        failure = receive(answer.message, serial_, limits_.answerBytes, patience);
    if (failure)
        return endAs(*failure);
    answer.end = WorkerEnd::answered;
    return answer;
}

WorkerAnswer WindowsWorkerProcess::ask(std::span<const std::byte> request, const WorkerInput& input,
                                       const CancelFlag& cancel)
{
    if (!pipe_.valid())
        return {WorkerEnd::died, {}, {ErrorKind::io, 0, "it had ended before"}};
    if (request.size() > longestWorkerRequest)
        return {WorkerEnd::notOpened, {}, {ErrorKind::invalid, 0, "the request is too long"}};
    if (input.path.empty())
        return exchange(request, 0, input.bytes, cancel);
    const auto file = openRegularHandle(systemPath(input.path), ReadPattern::scattered, input.links);
    if (!file)
        return {WorkerEnd::notOpened, {}, file.error()};
    const auto theirs = child_.give(*file);
    if (!theirs)
        return endAs(WorkerEnd::died);
    return exchange(request, *theirs, {}, cancel);
}

WorkerAnswer WindowsWorkerProcess::endAs(WorkerEnd end)
{
    WorkerAnswer answer{end, {}, {ErrorKind::io, 0, fault_}};
    if (end == WorkerEnd::died && fault_.empty())
        noteWhyItEnded(answer);
    pipe_.close();
    child_.end();
    return answer;
}

void WindowsWorkerProcess::noteWhyItEnded(WorkerAnswer& answer)
{
    const auto code = child_.endWithin(timeToEnd);
    if (!code) {
        answer.error.detail = "it closed its end";
        return;
    }
    if (*code == static_cast<DWORD>(workerOutOfMemory) || *code == outOfMemoryStatus || *code == commitLimitStatus)
        answer.end = WorkerEnd::tooMuchMemory;
    answer.error.systemCode = static_cast<int>(*code);
    answer.error.detail = "it ended with exit code " + std::to_string(*code);
}

class WindowsWorkerProcesses final : public WorkerProcesses {
public:
    explicit WindowsWorkerProcesses(std::vector<std::filesystem::path> programs) : programs_(std::move(programs)) {}

    Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits) override
    {
        if (limits.program == WorkerProgram::media)
            return Error{ErrorKind::notFound, 0, "this system has no worker that decodes"};
        const auto isThere = [](const std::filesystem::path& program) {
            return ::GetFileAttributesW(program.c_str()) != INVALID_FILE_ATTRIBUTES;
        };
        const auto program = std::find_if(programs_.begin(), programs_.end(), isThere);
        if (program == programs_.end())
            return Error{ErrorKind::notFound, 0, "the worker's program is not installed"};
        auto pipe = WorkerPipe::make();
        if (!pipe)
            return pipe.error();
        const auto words = workerArguments(limits);
        auto child = WorkerChild::start(*program, {words.begin(), words.end()}, pipe->theirs, limits);
        if (!child)
            return child.error();
        pipe->theirs = Handle();
        auto worker = std::make_unique<WindowsWorkerProcess>(std::move(pipe->ours), std::move(*child), limits);
        if (const Status status = worker->greet(); !status)
            return status.error();
        return std::unique_ptr<WorkerProcess>(std::move(worker));
    }

private:
    std::vector<std::filesystem::path> programs_;
};

}  // namespace
}  // namespace windows_os

std::unique_ptr<WorkerProcesses> makeWindowsWorkerProcesses(const std::filesystem::path& programFolder)
{
    constexpr const wchar_t* name = L"kelvane-worker.exe";
    return std::make_unique<windows_os::WindowsWorkerProcesses>(
        std::vector{programFolder / name, programFolder.parent_path() / name});
}

}  // namespace kelvane
