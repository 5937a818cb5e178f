// Port: how a person or the system asks the program to stop.
#pragma once

#include <memory>

#include "base/cancel.h"

namespace kelvane {

// Ends watching in its destructor.
class InterruptWatch {
public:
    virtual ~InterruptWatch() = default;
};

class Interrupts {
public:
    virtual ~Interrupts() = default;

    // Until the watch is destroyed, the first Ctrl-C (or request to end, or loss of the terminal) sets the flag, and a
    // second one ends the program at once with code 130. A request that the program was started to ignore stays
    // ignored. Writing to a closed pipe becomes an ordinary error. To be called before other threads are started; the
    // flag must outlive the watch. A system that cannot watch leaves its usual ways in force.
    [[nodiscard]] virtual std::unique_ptr<InterruptWatch> watch(CancelFlag& flag) = 0;
};

}  // namespace kelvane
