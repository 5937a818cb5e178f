// What was done to the results, so that it can be taken back.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

#include "results/result_item.h"

namespace kelvane {

// One operation of a person; each part may be empty.
struct HistoryStep {
    struct Move {
        ItemId item{};
        GroupId from{}, to{};
    };

    std::vector<ItemId> toggled{};  // ticks that changed
    std::vector<ItemId> removed{};  // taken off the list
    std::vector<Move> moved{};      // into another group

    // A group that became one compared approximately because such items joined it, and one that a person had put
    // nothing into before.
    std::optional<GroupId> madeApproximate{}, madeByHand{};

    // The stretch of the order of view that a regrouping changed. It is put back only when the list was not sorted in
    // between, which the version of the order tells.
    std::uint32_t orderVersion = 0;
    std::size_t firstPosition = 0;
    std::vector<ItemId> orderBefore{}, orderAfter{};

    [[nodiscard]] bool empty() const { return toggled.empty() && removed.empty() && moved.empty(); }
    [[nodiscard]] std::size_t bytes() const;
};

// Remembers at most so many steps and bytes; the oldest go first.
class ResultsHistory {
public:
    static constexpr std::size_t mostSteps = 200;
    static constexpr std::size_t mostBytes = std::size_t{64} << 20;

    // A new step; what was undone before cannot be redone any more. An empty one is not kept.
    void push(HistoryStep step);
    void clear();
    [[nodiscard]] bool canUndo() const { return !done_.empty(); }
    [[nodiscard]] bool canRedo() const { return !undone_.empty(); }
    // The step to take back, or to do again; there must be one. It is on the other side from then on.
    [[nodiscard]] const HistoryStep& undo();
    [[nodiscard]] const HistoryStep& redo();

private:
    std::deque<HistoryStep> done_, undone_;  // the latest one last
    std::size_t bytes_ = 0;                  // of both
};

}  // namespace kelvane
