#include <algorithm>
#include <windows.h>

#include "base/byte_stream.h"
#include "platform/windows/adapters.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"
#include "platform/windows/worker_child.h"
#include "platform/windows/worker_pipe.h"
#include "platform/worker_dialogue.h"
#include "platform/worker_frames.h"

namespace kelvane {
namespace windows_os {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds timeToEnd{500};           // of a worker that closed its pipe
constexpr DWORD outOfMemoryStatus = 0xC0000017;  // STATUS_NO_MEMORY
constexpr DWORD commitLimitStatus = 0xC000012D;  // STATUS_COMMITMENT_LIMIT

class WindowsWorkerProcess final : public WorkerDialogue {
public:
    WindowsWorkerProcess(WorkerPipe pipe, WorkerChild child, const WorkerLimits& limits)
        : WorkerDialogue(limits), pipe_(std::move(pipe)), child_(std::move(child))
    {
    }

    bool alive() const override { return pipe_.silent(); }

private:
    bool connected() const override { return pipe_.valid(); }
    Result<Failure> send(std::uint32_t serial, std::span<const std::byte> request, const WorkerInput& input,
                         const Patience& patience) override;
    Failure receive(std::span<std::byte> bytes, const Patience& patience) override
    {
        return pipe_.receive(bytes, patience);
    }
    void noteWhyItEnded(WorkerAnswer& answer) override;
    void disconnect() override;

    Failure sendAll(std::uint32_t serial, std::span<const std::byte> request, std::uint64_t file,
                    std::span<const std::byte> bytes, const Patience& patience);

    WorkerPipe pipe_;
    WorkerChild child_;
};

// In front of a request stand the handle of its file, 0 for none, and how many bytes follow it in place of a file.
WorkerDialogue::Failure WindowsWorkerProcess::sendAll(std::uint32_t serial, std::span<const std::byte> request,
                                                      std::uint64_t file, std::span<const std::byte> bytes,
                                                      const Patience& patience)
{
    ByteWriter message;
    message.number(file);
    message.number(static_cast<std::uint64_t>(bytes.size()));
    message.bytes(request);
    const Failure failure = pipe_.send(frameWorkerMessage(serial, message.written()), patience);
    return failure ? failure : pipe_.send(bytes, patience);
}

Result<WorkerDialogue::Failure> WindowsWorkerProcess::send(std::uint32_t serial, std::span<const std::byte> request,
                                                           const WorkerInput& input, const Patience& patience)
{
    if (input.path.empty())
        return sendAll(serial, request, 0, input.bytes, patience);
    const auto file = openRegularHandle(systemPath(input.path), ReadPattern::scattered, input.links);
    if (!file)
        return file.error();
    const auto theirs = child_.give(*file);
    if (!theirs)
        return Failure(WorkerEnd::died);
    return sendAll(serial, request, *theirs, {}, patience);
}

void WindowsWorkerProcess::disconnect()
{
    pipe_.close();
    child_.end();
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

    Result<std::unique_ptr<WorkerProcess>> start(const WorkerLimits& limits, const CancelFlag& cancel) override
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
        if (const Status status = worker->greet(cancel); !status)
            return status.error();
        return std::unique_ptr<WorkerProcess>(std::move(worker));
    }

    WorkerConfinement known() const override { return {false, false, false, true}; }

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
