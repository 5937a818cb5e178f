// Progress reports that do not come too often.
#pragma once

#include "engine/scan_observer.h"
#include "platform/clock.h"

namespace kelvane {

// Passes on at most ten reports a second. Used by one thread.
class ProgressPacer {
public:
    ProgressPacer(const Clock& clock, ScanObserver& observer) : clock_(clock), observer_(observer) {}

    // Whether a report is due; asking for one costs a look at the clock.
    [[nodiscard]] bool due() const { return clock_.ticks() - last_ >= intervalMs; }
    void report(const ScanProgress& progress)
    {
        last_ = clock_.ticks();
        observer_.progress(progress);
    }

private:
    static constexpr std::uint64_t intervalMs = 100;
    const Clock& clock_;
    ScanObserver& observer_;
    std::uint64_t last_ = 0;
};

}  // namespace kelvane
