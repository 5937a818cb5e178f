// A console program's view of a running clean-up, and of one that is taken back.
#pragma once

#include <optional>
#include <utility>

#include "cleanup/cleanup_pass.h"
#include "cli/progress_line.h"

namespace kelvane {

// Draws the progress, at most ten times a second.
class CleanWatch final : public PassObserver {
public:
    // Console and clock outlive it.
    CleanWatch(const Console& console, const Clock& clock, ProgressMode mode);

    // What the work will be.
    void begin(const CleanupPlan& plan);
    void begin(ProgressFigures figures) { figures_ = std::move(figures); }
    void groupBegins(ItemId /*original*/) override {}
    void itemEnded(const ItemOutcome& /*outcome*/) override {}
    void progress(std::uint64_t items, std::uint64_t bytes) override;
    // Erases the line; to be called before anything else is written.
    void erase();

private:
    const Clock& clock_;
    std::optional<ProgressLine> line_;
    ProgressFigures figures_;
    std::uint64_t drawn_ = 0;
};

}  // namespace kelvane
