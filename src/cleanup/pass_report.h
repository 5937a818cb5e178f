// What a pass counts, and whom it tells.
#pragma once

#include <cstddef>

#include "cleanup/cleanup_pass.h"

namespace kelvane {

// One thread; everything given outlives it.
class PassReport {
public:
    PassReport(const CleanupPlan& plan, PassObserver& observer) : plan_(plan), observer_(observer) {}

    void begin(std::size_t command) { observer_.itemBegins(command); }
    // Each command of the pass ends once, in the order of the plan.
    void end(const ItemOutcome& outcome);
    // The command was not reached.
    void leave(std::size_t command, ItemId kept);

    PassOutcome outcome;

private:
    const CleanupPlan& plan_;
    PassObserver& observer_;
    std::uint64_t items_ = 0;
    std::uint64_t bytes_ = 0;
};

// The numbers of the plan's commands that are links, or those that are none.
[[nodiscard]] std::vector<std::size_t> commandsOf(const CleanupPlan& plan, bool links);

}  // namespace kelvane
