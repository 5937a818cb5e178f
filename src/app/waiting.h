// Waiting, as something that is handed in: tests wait for no real seconds.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace kelvane {

// Thread-safe.
class Waiting {
public:
    virtual ~Waiting() = default;

    // Waits until `ready` holds, which is looked at under the lock whenever `changed` is notified, or until the time is
    // up. Gives what `ready` says at the end.
    [[nodiscard]] virtual bool until(std::unique_lock<std::mutex>& lock, std::condition_variable& changed,
                                     std::chrono::milliseconds limit, const std::function<bool()>& ready) = 0;

    virtual void pause(std::chrono::milliseconds time) = 0;
};

[[nodiscard]] std::unique_ptr<Waiting> makeWaiting();

}  // namespace kelvane
