// How a process of ours becomes a worker: the socket to the program, and the walls.
#pragma once

#include <functional>
#include <optional>
#include <span>

#include "base/result.h"
#include "platform/linux/file_handle.h"
#include "platform/worker_frames.h"
#include "platform/worker_requests.h"

namespace kelvane::linux_os {

// A worker's end of its socket.
class SocketRequests final : public WorkerRequests {
public:
    std::optional<WorkerRequest> next() override;
    Status answer(std::span<const std::byte> message) override { return send(serial_, message); }
    static Status greet(const WorkerConfinement& confinement) { return send(0, encodeGreeting(confinement)); }

private:
    static Status send(std::uint32_t serial, std::span<const std::byte> message);
    static FileHandle receiveHeader(std::span<std::byte, workerHeaderSize> bytes);
    static bool receive(std::span<std::byte> bytes);

    std::uint32_t serial_ = 0;
};

// Checks that the program started this process, runs `prepare`, raises the walls around that kind of worker, and greets
// the program. Whatever adapters have to open or load of their own has to happen in `prepare`.
[[nodiscard]] Status becomeWorker(WorkerProgram program, int argumentCount, char** arguments,
                                  const std::function<void()>& prepare);

}  // namespace kelvane::linux_os
