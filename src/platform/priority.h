// Port: work that steps back behind everything else on the computer.
#pragma once

#include <functional>

namespace kelvane {

class Priority {
public:
    virtual ~Priority() = default;

    // Runs the work to its end at below-normal processor and idle disk priority; threads that the work starts inherit
    // it. The caller's own priority is the same afterwards, also when the work throws (the exception passes on).
    // Linux lets nobody but root raise a priority again, so there the work runs on a thread of its own while the
    // caller waits. A system that refuses to lower the priority runs the work at normal priority.
    virtual void runLowered(const std::function<void()>& work) = 0;
};

}  // namespace kelvane
