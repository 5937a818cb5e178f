// What keeps a window's thread alive after its window is gone.
#pragma once

#include <memory>
#include <utility>

#include "app/work_queue.h"

namespace kelvane {

// A count of those who still need the thread: the window itself, and whatever works on it for others (shell extensions
// on Windows). The thread waits for the last one before it ends.
class ThreadReference {
public:
    using Hold = std::shared_ptr<void>;

    explicit ThreadReference(std::shared_ptr<WorkQueue> queue) : queue_(std::move(queue)) {}

    // On the window's thread. What it gives may be copied, and let go on any thread, also after this object is gone.
    [[nodiscard]] Hold hold();

    [[nodiscard]] bool isFree() const { return held_.expired(); }

private:
    std::shared_ptr<WorkQueue> queue_;
    std::weak_ptr<void> held_;
};

}  // namespace kelvane
