// The one flag by which a person stops long work.
#pragma once

#include <atomic>

namespace kelvane {

// Set from any thread, also from a signal handler (the flag is lock-free); looked at between items and chunks.
class CancelFlag {
public:
    void cancel() noexcept { cancelled_.store(true, std::memory_order_relaxed); }
    void reset() noexcept { cancelled_.store(false, std::memory_order_relaxed); }
    [[nodiscard]] bool cancelled() const noexcept { return cancelled_.load(std::memory_order_relaxed); }

private:
    static_assert(std::atomic<bool>::is_always_lock_free);
    std::atomic<bool> cancelled_{false};
};

}  // namespace kelvane
