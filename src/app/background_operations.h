// Work that outlives its window: a clean-up, a long copy, with a small window of its own.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>

#include "app/waiting.h"

namespace kelvane {

// Thread-safe. The last window does not let the program end under them without asking.
class BackgroundOperations {
public:
    using BringToFront = std::function<void()>;

    explicit BackgroundOperations(Waiting& waiting) : waiting_(waiting) {}
    BackgroundOperations(const BackgroundOperations&) = delete;
    BackgroundOperations& operator=(const BackgroundOperations&) = delete;

    // Counts as an operation until the ticket is gone; none may outlive this object. `show` is called on another
    // thread and must not wait for the operation.
    class Ticket {
    public:
        virtual ~Ticket() = default;
    };
    [[nodiscard]] std::unique_ptr<Ticket> begin(BringToFront show);

    [[nodiscard]] bool any() const;
    void bringOneToFront() const;
    // Gives whether none is left.
    [[nodiscard]] bool awaitNone(std::chrono::milliseconds limit) const;

private:
    class Counted;
    using Shown = std::list<BringToFront>;

    Waiting& waiting_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    Shown running_;
};

}  // namespace kelvane
