// What the program asks of a results window. The desktop program supplies real ones, tests and the console headless
// ones.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

#include "app/work_queue.h"

namespace kelvane {

// Made, used and destroyed on the thread of its instance (CXInstance). Where a toolkit wants its widgets on another
// thread, this is the half that stays and talks to them by messages.
class Window {
public:
    virtual ~Window() = default;

    // Somebody wants the window to close: its person, or the program on its way out. It ends by calling
    // CXInstance::quit(), at once or later, or stays when the person objects.
    virtual void closeRequested() = 0;
};

// One per window ever opened in this process.
using InstanceNumber = std::uint64_t;

// What other threads may do with a window. Copies are equal; outlives the window without harm.
class WindowHandle {
public:
    // Asks the window to close, on its own thread.
    using CloseRequest = WorkQueue::Work;

    WindowHandle(InstanceNumber number, std::shared_ptr<WorkQueue> queue, CloseRequest close);

    [[nodiscard]] InstanceNumber number() const { return number_; }
    void requestClose() const;
    // False for a window that hangs: its thread took no message within the time.
    [[nodiscard]] bool answersWithin(std::chrono::milliseconds limit) const { return queue_->answersWithin(limit); }

private:
    InstanceNumber number_;
    std::shared_ptr<WorkQueue> queue_;
    CloseRequest close_;
};

using WindowHandles = std::vector<WindowHandle>;

}  // namespace kelvane
