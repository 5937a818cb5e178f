#include "app/thread_reference.h"

namespace kelvane {

ThreadReference::Hold ThreadReference::hold()
{
    if (auto held = held_.lock())
        return held;
    const Hold first(nullptr, [queue = queue_](void*) { queue->wake(); });
    held_ = first;
    return first;
}

}  // namespace kelvane
