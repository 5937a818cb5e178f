// The program's end of the pipe to a worker.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "base/result.h"
#include "platform/windows/handle.h"
#include "platform/worker_dialogue.h"

namespace kelvane::windows_os {

// One thread at a time.
class WorkerPipe {
public:
    struct Ends;
    // The other end is to be inherited by the worker.
    [[nodiscard]] static Result<Ends> make();

    WorkerPipe() = default;
    [[nodiscard]] bool valid() const { return pipe_.valid(); }
    void close() { pipe_ = Handle(); }

    // All of the bytes, or why not. After a failure the pipe is good for nothing more.
    [[nodiscard]] std::optional<WorkerEnd> send(std::span<const std::byte> bytes, const Patience& patience);
    [[nodiscard]] std::optional<WorkerEnd> receive(std::span<std::byte> bytes, const Patience& patience);
    // Whether the other end is there and has said nothing.
    [[nodiscard]] bool silent() const;

private:
    WorkerPipe(Handle pipe, Handle done) : pipe_(std::move(pipe)), done_(std::move(done)) {}
    [[nodiscard]] std::optional<WorkerEnd> finish(OVERLAPPED& transfer, const Patience& patience, DWORD& moved);

    Handle pipe_;
    Handle done_;  // the event of the transfer in work
};

struct WorkerPipe::Ends {
    WorkerPipe ours;
    Handle theirs;
};

}  // namespace kelvane::windows_os
