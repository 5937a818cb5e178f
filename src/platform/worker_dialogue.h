// The program's side of the talk with a worker, over whatever connects the two.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/worker_processes.h"

namespace kelvane {

// How long one exchange may take; no time: as long as it likes.
class Patience {
public:
    Patience(std::chrono::milliseconds time, const CancelFlag& cancel);

    // Nothing while it lasts.
    [[nodiscard]] std::optional<WorkerEnd> over() const;
    // How long to wait until the flag should be looked at again.
    [[nodiscard]] std::chrono::milliseconds nextLook() const;

private:
    std::chrono::steady_clock::time_point end_;
    const CancelFlag& cancel_;
};

// What a system does not have to know of: headers and serials, lengths that are not trusted, how a request ends.
class WorkerDialogue : public WorkerProcess {
public:
    // Waits until the worker is confined; an error where it is none of ours, `cancelled` where nobody waits.
    [[nodiscard]] Status greet(const CancelFlag& cancel);
    [[nodiscard]] WorkerAnswer ask(std::span<const std::byte> request, const WorkerInput& input,
                                   const CancelFlag& cancel) final;
    [[nodiscard]] WorkerConfinement confinement() const final { return confinement_; }

protected:
    using Failure = std::optional<WorkerEnd>;  // why an exchange did not come about, nothing when it did

    explicit WorkerDialogue(const WorkerLimits& limits) : limits_(limits) {}
    [[nodiscard]] const WorkerLimits& limits() const { return limits_; }

private:
    [[nodiscard]] virtual bool connected() const = 0;
    // An error where the input cannot be opened: nothing was sent then.
    [[nodiscard]] virtual Result<Failure> send(std::uint32_t serial, std::span<const std::byte> request,
                                               const WorkerInput& input, const Patience& patience) = 0;
    // All of the bytes.
    [[nodiscard]] virtual Failure receive(std::span<std::byte> bytes, const Patience& patience) = 0;
    // Of a worker that is not there any more; it may have come to another end than `died`.
    virtual void noteWhyItEnded(WorkerAnswer& answer) = 0;
    virtual void disconnect() = 0;  // and ends it

    Failure receiveMessage(std::vector<std::byte>& message, std::uint64_t longest, const Patience& patience);
    WorkerAnswer endAs(WorkerEnd end);

    const WorkerLimits limits_;
    WorkerConfinement confinement_;
    std::uint32_t serial_ = 0;  // of the request in work, 0 for the greeting
    std::string fault_;         // what it did that none of ours does
};

}  // namespace kelvane
