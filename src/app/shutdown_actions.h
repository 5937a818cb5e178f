// What is to be done when the program ends, by those who know what: plug-ins to be unloaded, caches to be closed.
#pragma once

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace kelvane {

// Thread-safe.
class ShutdownActions {
public:
    void add(std::function<void()> action)
    {
        const std::lock_guard lock(mutex_);
        actions_.push_back(std::move(action));
    }

    // Each once, the last one added first: what came later may lean on what was there. An action may add another,
    // which comes next.
    void runInReverse()
    {
        while (const auto action = takeLast())
            action();
    }

private:
    std::function<void()> takeLast()
    {
        const std::lock_guard lock(mutex_);
        if (actions_.empty())
            return nullptr;
        auto action = std::move(actions_.back());
        actions_.pop_back();
        return action;
    }

    std::mutex mutex_;
    std::vector<std::function<void()>> actions_;
};

}  // namespace kelvane
