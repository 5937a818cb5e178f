// What a walk tells of itself, no more often than a person can read.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/scan_observer.h"
#include "platform/clock.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Used by one thread. What is handed over at construction must outlive it.
class WalkProgress {
public:
    WalkProgress(ShellNamespace& shell, const Clock& clock, ScanObserver& observer)
        : shell_(shell), clock_(clock), observer_(observer)
    {
    }

    // Before a folder is listed: the status line and the caption, at most once in 1001 ms.
    void enteringFolder(const ShellItem& folder, std::uint64_t candidates);

    // Between items: the numbers, at most ten times a second.
    void counted(std::uint64_t candidates);

private:
    // Whether so many milliseconds have passed since `last`, which then becomes now. A clock that was set back counts
    // as passed.
    [[nodiscard]] bool isDue(std::optional<std::uint64_t>& last, std::uint64_t interval) const;

    ShellNamespace& shell_;
    const Clock& clock_;
    ScanObserver& observer_;
    std::optional<std::uint64_t> lastText_;
    std::optional<std::uint64_t> lastNumbers_;
    unsigned untilClock_ = 0;
};

}  // namespace kelvane
