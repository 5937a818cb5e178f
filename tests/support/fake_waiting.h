// Waiting without real seconds.
#pragma once

#include <algorithm>
#include <mutex>
#include <set>
#include <vector>

#include "app/waiting.h"

namespace kelvane::testing {

// What is awaited is awaited for as long as it takes (a minute at most), but for the waits that a test lets run out at
// once. Pauses take no time. Every limit is kept.
class FakeWaiting final : public Waiting {
public:
    using Limit = std::chrono::milliseconds;

    bool until(std::unique_lock<std::mutex>& lock, std::condition_variable& changed, Limit limit,
               const std::function<bool()>& ready) override
    {
        if (note(limit))
            return ready();
        return changed.wait_for(lock, std::chrono::minutes(1), ready);
    }

    void pause(Limit time) override
    {
        const std::lock_guard lock(mutex_);
        pauses_.push_back(time.count());
        if (whilePausing)
            whilePausing();
    }

    // Waits with this limit run out as soon as they begin.
    void letRunOut(Limit limit)
    {
        const std::lock_guard lock(mutex_);
        runOut_.insert(limit);
    }

    bool waitedFor(Limit limit) const
    {
        const std::lock_guard lock(mutex_);
        return std::find(limits_.begin(), limits_.end(), limit) != limits_.end();
    }

    std::vector<std::int64_t> pauses() const
    {
        const std::lock_guard lock(mutex_);
        return pauses_;
    }

    std::function<void()> whilePausing;

private:
    bool note(Limit limit)
    {
        const std::lock_guard lock(mutex_);
        limits_.push_back(limit);
        return runOut_.contains(limit);
    }

    mutable std::mutex mutex_;
    std::set<Limit> runOut_;
    std::vector<Limit> limits_;
    std::vector<std::int64_t> pauses_;
};

}  // namespace kelvane::testing
